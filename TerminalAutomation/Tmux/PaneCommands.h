// The tmux commands that act on one pane or read it, each under a guard that the server itself checks in the
// same turn: without it a pane that has ended meanwhile could take the whole server down, and one that has
// moved or started another program would get what was meant for the former.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/ToolInputs.h"
#include "TerminalAutomation/Tmux/TmuxRows.h"

namespace velmora {

struct PaneCommand {
  std::vector<std::string> arguments;
  std::string standardInput;
};

/// What a guarded command prints first when the guard refuses, or lets it through.
inline constexpr std::string_view guardRefused = "STALE";
inline constexpr std::string_view guardPassed = "PANE";
/// When the pane is the one that was listed, but no longer idle: another program runs, or somebody types.
inline constexpr std::string_view guardBusy = "BUSY";
inline constexpr std::string_view guardTyped = "TYPED";

/// What makes input wait that only an idle pane may get.
struct IdleGuard {
  std::int64_t lastActivity = 0;  ///< As the pane was listed.
  bool cursorHolds = false;       ///< The cursor must stand in the column where it was listed.
};

/// How a text reaches a program that asks for pasted text as a block ("bracketed paste").
enum class PasteForm {
  block,  ///< So asked for: several lines are one text, and a shell runs none before the Return.
  keys,   ///< As if typed: an editor takes them for its commands.
};

/// Types `text` and a Return. The server asks for the standard input before it does anything, so a client
/// that is killed while the server hangs leaves nothing behind that would be typed later. `bufferName` must
/// be new to the server. With `idle` the pane must still be idle too.
PaneCommand typeText(const PaneRow& pane, std::string_view text, const std::string& bufferName,
                     PasteForm form = PasteForm::block, const std::optional<IdleGuard>& idle = {});

/// Presses `key` `repeatCount` times, under the same conditions.
PaneCommand pressKey(const PaneRow& pane, TerminalKey key, std::int64_t repeatCount,
                     const std::string& bufferName, const std::optional<IdleGuard>& idle = {});

/// Prints guardPassed, cursor column, row, length of the history and width on a line, parted by tabs. Then
/// the screen down to the cursor's row as it was listed, with wrapped lines joined, and that row alone.
PaneCommand readCursorLine(const PaneRow& pane);

/// Prints guardPassed on a line, then the pane's text with wrapped lines joined.
PaneCommand readText(const PaneRow& pane, OutputSource source);

/// Prints guardPassed, width, height, cursor column, row and visibility on a line, parted by tabs, then the
/// screen with its colours.
PaneCommand readScreen(const PaneRow& pane);

/// Types `text` as if by keys and submits nothing, under the conditions of typeText.
PaneCommand typePlainly(const PaneRow& pane, std::string_view text, const std::string& bufferName,
                        const std::optional<IdleGuard>& idle = {});

/// Prints guardPassed, cursor column, row, length and limit of the history on a line, parted by tabs, then
/// the rows of the screen as they stand.
PaneCommand readRows(const PaneRow& pane);

/// Prints guardPassed on a line, then the text from a row on, with wrapped lines joined: 0 is the screen's
/// first row, negative ones are the history's; without a row, all of it.
PaneCommand readSince(const PaneRow& pane, std::optional<std::int64_t> row);

/// Prints guardPassed, length of the history, width, height and limit of the history on a line, parted by
/// tabs. Then the rows from so many above the screen on, all without a number, down to its end: as they
/// stand, again with wrapped lines joined, and, `coloured`, once more as they stand, with colours.
PaneCommand readGrid(const PaneRow& pane, std::optional<std::int64_t> rowsAbove, bool coloured);

}  // namespace velmora
