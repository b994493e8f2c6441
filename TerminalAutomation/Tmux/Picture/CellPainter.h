// Draws cells with Cairo and their characters with Pango. Used by PanePicture for one picture, on one thread.
#pragma once

#include <cairo.h>
#include <pango/pangocairo.h>

#include <memory>
#include <string>
#include <string_view>

#include "TerminalAutomation/Tmux/Picture/CellStyle.h"
#include "TerminalAutomation/Tmux/Picture/LineGlyphs.h"
#include "TerminalAutomation/Tmux/Picture/PaneTheme.h"

namespace velmora {

/// The measures of a picture in pixels, all derived from the width of a cell.
struct CellMetrics {
  int width;

  int height() const { return 2 * width; }
  double fontSize() const { return 1.6 * width; }
  int baseline() const { return 31 * width / 20; }  // below the top of the cell
  int stroke() const { return width >= 8 ? width / 5 - 1 : 1; }
};

/// The colours a style comes to, after dim, reverse and hidden.
struct CellColours {
  Rgb text;
  Rgb background;
  Rgb underline;
};

CellColours coloursOf(const CellStyle& style);

template <auto function>
struct CallDeleter {
  template <typename T>
  void operator()(T* object) const noexcept {
    function(object);
  }
};

class CellPainter {
 public:
  /// `cairo` must outlive the painter.
  CellPainter(cairo_t* cairo, const CellMetrics& metrics);

  void fill(const PixelBox& box, Rgb colour);

  /// `text` is printable ASCII, one character a cell from the left of `box`.
  void drawRun(std::string_view text, const PixelBox& box, const CellStyle& style, Rgb colour);

  /// `text` is one character with what joins it; `box` is its one or two cells.
  void drawCharacter(const std::string& text, const PixelBox& box, const CellStyle& style, Rgb colour);

  /// Underline, strike and overline along `box`.
  void drawLines(const PixelBox& box, const CellStyle& style, const CellColours& colours);

 private:
  template <typename T>
  using GObjectPtr = std::unique_ptr<T, CallDeleter<g_object_unref>>;

  void setColour(Rgb colour);
  void setFont(const CellStyle& style);
  bool showEvenly(const PixelBox& box, std::size_t characters);
  void showFitted(const PixelBox& box);
  void drawUnderline(const PixelBox& box, Underline underline);
  void drawMissing(const PixelBox& box);

  cairo_t* cairo_;
  CellMetrics metrics_;
  GObjectPtr<PangoFontMap> fonts_;
  GObjectPtr<PangoContext> context_;
  GObjectPtr<PangoLayout> layout_;
  std::unique_ptr<PangoFontDescription, CallDeleter<pango_font_description_free>> font_;
  bool anyFont_ = false;
};

}  // namespace velmora
