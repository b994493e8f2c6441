// Where the text of a pane ended, written down so that it can be found again, or is known to be lost. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "TerminalAutomation/Tmux/PaneGrid.h"
#include "TerminalAutomation/Tmux/TmuxRows.h"

namespace velmora {

/// The text ended with a line that began in `row` of the grid; the rows above tell whether that is still so.
struct PaneCursor {
  std::int64_t row = 0;
  std::int64_t columns = 0;  ///< Of the pane: in another width the rows are others.
  std::int64_t above = 0;    ///< How many rows `anchor` stands for.
  std::uint64_t anchor = 0;
  std::uint32_t line = 0;  ///< What the last line says.

  /// Of the grid's end; nothing where the beginning of its last line cannot be told.
  static std::optional<PaneCursor> atEndOf(const PaneGrid& grid, const PaneRow& pane);

  /// Where the line is by now; nothing when it is gone, and when it may be in more than one place: lines are
  /// often alike. The grid must hold all rows when some may have been dropped.
  std::optional<std::int64_t> find(const PaneGrid& grid, const PaneRow& pane) const;

  /// Few plain characters, and back.
  std::string toString() const;
  static std::optional<PaneCursor> parse(std::string_view text);

  bool operator==(const PaneCursor&) const = default;
};

/// What a line says, but for the blanks at its end.
std::uint32_t markOf(std::string_view line);

}  // namespace velmora
