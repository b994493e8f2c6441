// The screen of a tmux pane as a grid of cells, read from the output of `tmux capture-pane -e -N -p`: lines
// of text with SGR sequences (their state runs across lines), SO and SI around DEC line drawing, and links
// (OSC 8), which are left out. Knows no fonts and no pixels.
//
// Nothing in the text is trusted: sequences may be cut off, numbers absurd, bytes ill-formed UTF-8, lines
// longer than the grid. What does not fit the grid is dropped, ill-formed bytes become U+FFFD, sequences that
// are not SGR are skipped. Never throws but for memory. A value: one thread at a time.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "TerminalAutomation/Tmux/Picture/CellStyle.h"

namespace velmora {

struct PaneCell {
  std::string text;  // UTF-8: a character and what joins it; empty for a blank, at most maximumBytes
  int width = 1;     // in columns; 2 for a wide character, 0 for the column that its right half covers
  CellStyle style;

  static constexpr std::size_t maximumBytes = 64;
};

class PaneCells {
 public:
  /// Sizes are clamped to 1…maximumColumns and 1…maximumRows.
  PaneCells(int columns, int rows);

  static constexpr int maximumColumns = 1000;
  static constexpr int maximumRows = 500;

  int columns() const { return columns_; }
  int rows() const { return rows_; }

  /// The cell at a place inside the grid.
  PaneCell& at(int column, int row) { return cells_[index(column, row)]; }
  const PaneCell& at(int column, int row) const { return cells_[index(column, row)]; }

 private:
  std::size_t index(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(column);
  }

  int columns_;
  int rows_;
  std::vector<PaneCell> cells_;
};

PaneCells parsePaneCells(std::string_view text, int columns, int rows);

/// What `c` shows while the DEC line-drawing set is on; empty for what the set leaves alone.
std::string_view lineDrawing(char c);

/// The first code point of a cell's text, which must not be empty.
char32_t firstCodePoint(std::string_view text);

}  // namespace velmora
