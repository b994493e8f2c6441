// The tmux commands that act on one pane or read it, each under a guard that the server itself checks in the
// same turn: without it a pane that has ended meanwhile could take the whole server down, and one that has
// moved or started another program would get what was meant for the former.
#pragma once

#include <cstdint>
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

/// How a text reaches a program that asks for pasted text as a block ("bracketed paste").
enum class PasteForm {
  block,  ///< So asked for: several lines are one text, and a shell runs none before the Return.
  keys,   ///< As if typed: an editor takes them for its commands.
};

/// Types `text` and a Return. The server asks for the standard input before it does anything, so a client
/// that is killed while the server hangs leaves nothing behind that would be typed later. `bufferName` must
/// be new to the server.
PaneCommand typeText(const PaneRow& pane, std::string_view text, const std::string& bufferName,
                     PasteForm form = PasteForm::block);

/// Presses `key` `repeatCount` times, under the same conditions.
PaneCommand pressKey(const PaneRow& pane, TerminalKey key, std::int64_t repeatCount,
                     const std::string& bufferName);

/// Prints guardPassed on a line, then the pane's text with wrapped lines joined.
PaneCommand readText(const PaneRow& pane, OutputSource source);

/// Prints guardPassed, width, height, cursor column, row and visibility on a line, parted by tabs, then the
/// screen with its colours.
PaneCommand readScreen(const PaneRow& pane);

}  // namespace velmora
