// TmuxOperations: reads as the extended form asks, only what is new or with colours.
#include <algorithm>
#include <utility>

#include "TerminalAutomation/Tmux/PaneColours.h"
#include "TerminalAutomation/Tmux/PaneCursor.h"
#include "TerminalAutomation/Tmux/PaneGrid.h"
#include "TerminalAutomation/Tmux/PaneText.h"
#include "TerminalAutomation/Tmux/TmuxOperations.h"

namespace velmora {

namespace {

constexpr std::int64_t rowsAboveScreen = 24;
constexpr std::int64_t rowsInAMoment = 500;  // by which a history may grow between two looks
constexpr int mostLooks = 3;                 // before all rows are asked for

OutputFound found(const PaneRow& pane, const PaneGrid& grid, const OutputWish& wish,
                  const std::optional<PaneCursor>& since, std::optional<std::int64_t> place) {
  const bool coloured = wish.format == OutputFormat::ansi;
  const auto from = place.value_or(wish.source == OutputSource::history ? 0 : grid.history());
  std::string text;
  if (coloured) {
    // The colours that hold at the first row began in one above it.
    const auto all = onlyColours(grid.text(grid.first()));
    text = colouredAfter(all, onlyColours(grid.text(grid.first(), from)).size());
  } else {
    text = grid.text(from);
  }
  text = tidyPaneText(std::move(text));
  OutputFound result{.cursorLost = wish.after && !place};
  if (const auto cursor = PaneCursor::atEndOf(grid, pane)) result.cursor = cursor->toString();
  if (place) {
    // The line that was the last one.
    const auto line = std::min(text.find('\n'), text.size());
    if (markOf(withoutColours(text.substr(0, line))) == since->line) {
      const auto bytes = std::min(line + 1, text.size());
      text = coloured && bytes < text.size() ? colouredAfter(text, bytes) : text.substr(bytes);
    }
  }
  result.output.source = wish.source;
  if (coloured) {
    auto end = colouredEnd(text, wish.maxCharacters);
    result.output.text = std::move(end.text);
    result.output.originalCharacterCount = end.totalCharacters;
  } else {
    const auto end = boundedEnd(text, wish.maxCharacters);
    result.output.originalCharacterCount = end.totalCharacters;
    text.erase(0, text.size() - end.text.size());
    result.output.text = std::move(text);
  }
  return result;
}

}  // namespace

OutputFound TmuxOperations::readAs(const OutputWish& wish, const TabAddress& tab, Deadline deadline) {
  const PaneRow pane = paneAt(tab);
  const bool coloured = wish.format == OutputFormat::ansi;
  const auto look = [&](std::optional<std::int64_t> rowsAbove) {
    auto grid = PaneGrid::parse(read(deadline, readGrid(pane, rowsAbove, coloured), historyLimit), rowsAbove,
                                coloured);
    if (!grid) throw tmuxError::unreadableAnswer();
    return std::move(*grid);
  };
  const auto least = wish.source == OutputSource::history ? std::nullopt : std::optional(rowsAboveScreen);
  const auto cursor = wish.after ? PaneCursor::parse(*wish.after) : std::nullopt;
  if (!cursor) return found(pane, look(least), wish, std::nullopt, std::nullopt);

  // How many rows there are above the screen is not known before the look.
  auto history = pane.historySize;
  for (int looks = 0; looks < mostLooks; ++looks) {
    const auto needed = cursor->row - cursor->above;
    const auto above = std::max(history - needed + rowsInAMoment, rowsAboveScreen);
    const auto grid = look(above);
    const bool hasAll = grid.first() == 0 || (!grid.mayHaveDropped() && grid.first() <= needed);
    if (hasAll) {
      const auto place = cursor->find(grid, pane);
      // The whole history that is given instead must be here.
      if (!place && wish.source == OutputSource::history && grid.first() > 0) break;
      return found(pane, grid, wish, cursor, place);
    }
    if (grid.mayHaveDropped()) break;
    history = grid.history();
  }
  const auto grid = look(std::nullopt);
  return found(pane, grid, wish, cursor, cursor->find(grid, pane));
}

}  // namespace velmora
