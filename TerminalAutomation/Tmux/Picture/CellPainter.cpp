#include "TerminalAutomation/Tmux/Picture/CellPainter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "TerminalAutomation/Tmux/Picture/PaneCells.h"

namespace velmora {
namespace {

Rgb blend(Rgb over, Rgb under, int percent) {
  const auto mix = [percent](int a, int b) {
    return static_cast<std::uint8_t>((a * percent + b * (100 - percent)) / 100);
  };
  return {mix(over.red, under.red), mix(over.green, under.green), mix(over.blue, under.blue)};
}

/// Whether Pango can draw text at all: without a single font it would end the program.
bool hasFonts(PangoFontMap* fonts) {
  PangoFontFamily** families = nullptr;
  int count = 0;
  pango_font_map_list_families(fonts, &families, &count);
  g_free(families);
  return count > 0;
}

}  // namespace

CellColours coloursOf(const CellStyle& style) {
  CellColours colours{PaneTheme::resolve(style.foreground, PaneTheme::foreground),
                      PaneTheme::resolve(style.background, PaneTheme::background),
                      {}};
  if (style.reverse) std::swap(colours.text, colours.background);
  if (style.dim) colours.text = blend(colours.text, colours.background, 60);
  colours.underline = PaneTheme::resolve(style.underlineColour, colours.text);
  return colours;
}

CellPainter::CellPainter(cairo_t* cairo, const CellMetrics& metrics)
    : cairo_(cairo), metrics_(metrics), fonts_(pango_cairo_font_map_new()) {
  anyFont_ = hasFonts(fonts_.get());
  if (!anyFont_) return;
  context_.reset(pango_font_map_create_context(fonts_.get()));
  // The same picture on every desktop: nothing is taken from its font settings.
  const std::unique_ptr<cairo_font_options_t, CallDeleter<cairo_font_options_destroy>> options(
      cairo_font_options_create());
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_SLIGHT);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_ON);
  pango_cairo_context_set_font_options(context_.get(), options.get());
  layout_.reset(pango_layout_new(context_.get()));
  pango_layout_set_auto_dir(layout_.get(), FALSE);
  pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
  // One family only. An emoji family next to it would take the digits.
  font_.reset(pango_font_description_from_string("DejaVu Sans Mono, monospace"));
}

void CellPainter::setColour(Rgb colour) {
  cairo_set_source_rgb(cairo_, colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0);
}

void CellPainter::fill(const PixelBox& box, Rgb colour) {
  setColour(colour);
  cairo_rectangle(cairo_, box.x, box.y, box.width, box.height);
  cairo_fill(cairo_);
}

void CellPainter::setFont(const CellStyle& style) {
  pango_font_description_set_absolute_size(font_.get(), metrics_.fontSize() * PANGO_SCALE);
  pango_font_description_set_weight(font_.get(), style.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_font_description_set_style(font_.get(), style.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
  pango_layout_set_font_description(layout_.get(), font_.get());
}

void CellPainter::drawRun(std::string_view text, const PixelBox& box, const CellStyle& style, Rgb colour) {
  if (anyFont_) {
    setFont(style);
    pango_layout_set_text(layout_.get(), text.data(), static_cast<int>(text.size()));
    setColour(colour);
    if (showEvenly(box, text.size())) return;
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == ' ') continue;
    const PixelBox cell{box.x + static_cast<int>(i) * metrics_.width, box.y, metrics_.width, box.height};
    drawCharacter(std::string(1, text[i]), cell, style, colour);
  }
}

/// Shows the layout's line with each glyph in the middle of its cell. False when the font has not made one
/// glyph of each character.
bool CellPainter::showEvenly(const PixelBox& box, std::size_t characters) {
  PangoLayoutLine* line = pango_layout_get_line(layout_.get(), 0);
  const int cell = metrics_.width * PANGO_SCALE;
  std::size_t glyphs = 0;
  for (const GSList* item = line->runs; item != nullptr; item = item->next) {
    const auto* run = static_cast<PangoLayoutRun*>(item->data);
    for (int i = 0; i < run->glyphs->num_glyphs; ++i, ++glyphs) {
      PangoGlyphInfo& glyph = run->glyphs->glyphs[i];
      if ((glyph.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0 || glyph.geometry.width > cell) return false;
      glyph.geometry.x_offset += PANGO_PIXELS((cell - glyph.geometry.width) / 2) * PANGO_SCALE;
      glyph.geometry.width = cell;
    }
  }
  if (glyphs != characters) return false;
  cairo_move_to(cairo_, box.x, box.y + metrics_.baseline());
  pango_cairo_show_layout_line(cairo_, line);
  return true;
}

void CellPainter::drawCharacter(const std::string& text, const PixelBox& box, const CellStyle& style,
                                Rgb colour) {
  cairo_save(cairo_);
  cairo_rectangle(cairo_, box.x, box.y, box.width, box.height);
  cairo_clip(cairo_);
  setColour(colour);
  const char32_t first = firstCodePoint(text);
  if (isLineGlyph(first)) {
    drawLineGlyph(cairo_, first, box, metrics_.stroke());
  } else if (!anyFont_) {
    drawMissing(box);
  } else {
    setFont(style);
    pango_layout_set_text(layout_.get(), text.data(), static_cast<int>(text.size()));
    if (pango_layout_get_unknown_glyphs_count(layout_.get()) > 0) {
      drawMissing(box);
    } else {
      showFitted(box);
    }
  }
  cairo_restore(cairo_);
}

/// Shows the layout in the middle of the box, on the common baseline, smaller if it is too wide.
void CellPainter::showFitted(const PixelBox& box) {
  PangoRectangle logical{};
  pango_layout_get_extents(layout_.get(), nullptr, &logical);
  const double width = static_cast<double>(logical.width) / PANGO_SCALE;
  const double baseline = static_cast<double>(pango_layout_get_baseline(layout_.get())) / PANGO_SCALE;
  const double scale = width > box.width ? box.width / width : 1.0;
  const double left = std::floor(box.x + (box.width - width * scale) / 2);
  cairo_translate(cairo_, left, box.y + metrics_.baseline());
  cairo_scale(cairo_, scale, scale);
  cairo_move_to(cairo_, 0, -baseline);
  pango_cairo_show_layout(cairo_, layout_.get());
}

void CellPainter::drawMissing(const PixelBox& box) {
  const int stroke = metrics_.stroke();
  const int left = box.x + stroke;
  const int top = box.y + box.height / 4;
  cairo_set_line_width(cairo_, stroke);
  cairo_rectangle(cairo_, left + stroke / 2.0, top + stroke / 2.0, box.width - 3 * stroke,
                  box.y + metrics_.baseline() - top - stroke);
  cairo_stroke(cairo_);
}

void CellPainter::drawLines(const PixelBox& box, const CellStyle& style, const CellColours& colours) {
  const int stroke = metrics_.stroke();
  if (style.underline != Underline::none) {
    setColour(colours.underline);
    drawUnderline(box, style.underline);
  }
  if (style.strike)
    fill({box.x, box.y + metrics_.baseline() - box.height / 4, box.width, stroke}, colours.text);
  if (style.overline) fill({box.x, box.y, box.width, stroke}, colours.text);
}

void CellPainter::drawUnderline(const PixelBox& box, Underline underline) {
  const int stroke = metrics_.stroke();
  const int top = box.y + std::min(metrics_.baseline() + 2 * stroke, box.height - stroke);
  const auto pieces = [&](int on, int off) {
    for (int x = 0; x < box.width; x += on + off) {
      cairo_rectangle(cairo_, box.x + x, top, std::min(on, box.width - x), stroke);
    }
    cairo_fill(cairo_);
  };
  switch (underline) {
    case Underline::none:
      break;
    case Underline::single:
      pieces(box.width, 0);
      break;
    case Underline::double_:
      pieces(box.width, 0);
      cairo_rectangle(cairo_, box.x, std::min(top + 2 * stroke, box.y + box.height - stroke), box.width,
                      stroke);
      cairo_fill(cairo_);
      break;
    case Underline::dotted:
      pieces(stroke, stroke);
      break;
    case Underline::dashed:
      pieces(metrics_.width / 2, metrics_.width - metrics_.width / 2 - 2 * stroke);
      break;
    case Underline::curly: {
      const double height = 1.2 * stroke;
      cairo_set_line_width(cairo_, stroke);
      cairo_move_to(cairo_, box.x, top + stroke);
      for (int x = 1; x <= box.width; ++x) {
        const double angle = 2 * std::numbers::pi * x / metrics_.width;
        cairo_line_to(cairo_, box.x + x, top + stroke - height * std::sin(angle));
      }
      cairo_stroke(cairo_);
      break;
    }
  }
}

}  // namespace velmora
