#include "TerminalAutomation/Tmux/Picture/PanePicture.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "System/Mutex.h"
#include "TerminalAutomation/Tmux/Picture/CellPainter.h"
#include "TerminalAutomation/Tmux/Picture/PaneCells.h"
#include "TerminalAutomation/Tmux/Picture/PngWriter.h"

namespace velmora {
namespace {

constexpr int largestCellWidth = 10;
constexpr int smallestCellWidth = 4;
constexpr std::int64_t maximumPixels = 4'000'000;

using SurfacePtr = std::unique_ptr<cairo_surface_t, CallDeleter<cairo_surface_destroy>>;
using CairoPtr = std::unique_ptr<cairo_t, CallDeleter<cairo_destroy>>;

/// Where the cells of a grid lie in the picture: a margin of almost a cell around them.
struct PictureLayout {
  explicit PictureLayout(const PaneCells& cells) : metrics{largestCellWidth} {
    const auto pixels = [&] {
      return static_cast<std::int64_t>(cells.columns()) * cells.rows() * metrics.width * metrics.height();
    };
    while (metrics.width > smallestCellWidth && pixels() > maximumPixels) --metrics.width;
    margin = metrics.width * 4 / 5;
    width = cells.columns() * metrics.width + 2 * margin;
    height = cells.rows() * metrics.height() + 2 * margin;
  }

  PixelBox boxOf(int column, int row, int columns) const {
    return {margin + column * metrics.width, margin + row * metrics.height(), columns * metrics.width,
            metrics.height()};
  }

  CellMetrics metrics;
  int margin = 0;
  int width = 0;
  int height = 0;
};

bool isPlain(const PaneCell& cell) {
  return cell.width == 1 &&
         (cell.text.empty() || (cell.text.size() == 1 && static_cast<unsigned char>(cell.text[0]) < 0x80));
}

/// Shows the cursor as a block: the cell under it takes the cursor's colour, its character the background's.
void placeCursor(PaneCells& cells, const PaneScreen& screen) {
  if (!screen.cursorVisible || screen.cursorRow < 0 || screen.cursorRow >= cells.rows()) return;
  int column = std::clamp(screen.cursorColumn, 0, cells.columns() - 1);
  while (column > 0 && cells.at(column, screen.cursorRow).width == 0) --column;
  CellStyle& style = cells.at(column, screen.cursorRow).style;
  const auto exactly = [](Rgb c) { return CellColour::rgb(c.red, c.green, c.blue); };
  style.foreground = exactly(PaneTheme::background);
  style.background = exactly(PaneTheme::cursor);
  style.underlineColour = {};
  style.reverse = style.dim = false;
}

/// One row: the longest runs of cells that look alike are drawn together.
class RowPainter {
 public:
  RowPainter(CellPainter& painter, const PaneCells& cells, const PictureLayout& layout)
      : painter_(painter), cells_(cells), layout_(layout) {}

  void paint(int row) {
    forEachRun(row, [&](int from, int to, const CellStyle& style) {
      const Rgb background = coloursOf(style).background;
      if (background != PaneTheme::background) painter_.fill(layout_.boxOf(from, row, to - from), background);
    });
    forEachRun(row, [&](int from, int to, const CellStyle& style) {
      if (style.hidden) return;
      const CellColours colours = coloursOf(style);
      paintText(row, from, to, style, colours.text);
      painter_.drawLines(layout_.boxOf(from, row, to - from), style, colours);
    });
  }

 private:
  template <typename Paint>
  void forEachRun(int row, Paint paint) {
    for (int from = 0; from < cells_.columns();) {
      const CellStyle& style = cells_.at(from, row).style;
      int to = from + std::max(cells_.at(from, row).width, 1);
      while (to < cells_.columns() && cells_.at(to, row).style == style) {
        to += std::max(cells_.at(to, row).width, 1);
      }
      to = std::min(to, cells_.columns());
      paint(from, to, style);
      from = to;
    }
  }

  void paintText(int row, int from, int to, const CellStyle& style, Rgb colour) {
    std::string run;
    int start = from;
    const auto flush = [&] {
      if (run.find_first_not_of(' ') != std::string::npos) {
        painter_.drawRun(run, layout_.boxOf(start, row, static_cast<int>(run.size())), style, colour);
      }
      run.clear();
    };
    for (int column = from; column < to; ++column) {
      const PaneCell& cell = cells_.at(column, row);
      if (isPlain(cell)) {
        if (run.empty()) start = column;
        run += cell.text.empty() ? " " : cell.text;
        continue;
      }
      flush();
      if (!cell.text.empty()) {
        painter_.drawCharacter(cell.text, layout_.boxOf(column, row, cell.width), style, colour);
      }
    }
    flush();
  }

  CellPainter& painter_;
  const PaneCells& cells_;
  const PictureLayout& layout_;
};

PixelImage pixelsOf(cairo_surface_t* surface, const PictureLayout& layout) {
  cairo_surface_flush(surface);
  PixelImage image{layout.width, layout.height, {}};
  const auto width = static_cast<std::size_t>(layout.width);
  image.pixels.resize(width * static_cast<std::size_t>(layout.height));
  const unsigned char* row = cairo_image_surface_get_data(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  for (std::size_t y = 0; y < static_cast<std::size_t>(layout.height); ++y, row += stride) {
    std::memcpy(image.pixels.data() + y * width, row, width * sizeof(std::uint32_t));
  }
  return image;
}

PixelImage drawPane(const PaneCells& cells) {
  const PictureLayout layout(cells);
  const SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, layout.width, layout.height));
  const CairoPtr cairo(cairo_create(surface.get()));
  CellPainter painter(cairo.get(), layout.metrics);
  painter.fill({0, 0, layout.width, layout.height}, PaneTheme::background);
  RowPainter rows(painter, cells, layout);
  for (int row = 0; row < cells.rows(); ++row) rows.paint(row);
  if (const cairo_status_t status = cairo_status(cairo.get()); status != CAIRO_STATUS_SUCCESS) {
    throw std::runtime_error(std::string("the pane could not be drawn: ") + cairo_status_to_string(status));
  }
  return pixelsOf(surface.get(), layout);
}

}  // namespace

std::string renderPanePicture(const PaneScreen& screen) {
  static Mutex oneAtATime;
  const MutexLock lock(oneAtATime);
  PaneCells cells = parsePaneCells(screen.text, screen.columns, screen.rows);
  placeCursor(cells, screen);
  return encodePng(drawPane(cells));
}

}  // namespace velmora
