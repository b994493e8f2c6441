#include "TerminalAutomation/Tmux/BusyDetector.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace velmora {

namespace {

template <std::size_t size>
bool isOneOf(std::string_view text, const std::array<std::string_view, size>& list) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

// Around a contained window's shell: one that waits for all, and below it the first of the new numbers, whose
// child the shell is.
constexpr std::string_view container = "bwrap";
constexpr std::array<std::string_view, 3> plainShells{"sh", "dash", "ash"};
constexpr std::array<std::string_view, 11> editingShells{"bash", "zsh",  "fish", "ksh",    "ksh93", "mksh",
                                                         "csh",  "tcsh", "nu",   "elvish", "xonsh"};
/// Those whose questions can be told from their prompt; others edit lines with settings of their own.
constexpr std::array<std::string_view, 3> knownEditors{"bash", "zsh", "fish"};
constexpr std::array<std::string_view, 8> optionsWithValue{
    "--rcfile", "--init-file", "--init-command", "-C", "-o", "+o", "-O", "+O"};

/// A shell that runs a command string or a script is not at a prompt.
bool runsScript(const std::vector<std::string>& arguments) {
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (isOneOf(std::string_view(argument), optionsWithValue)) {
      ++i;
    } else if (argument.starts_with("--")) {
      if (argument.starts_with("--command")) return true;
    } else if (argument.starts_with('-') && argument.size() > 1) {
      if (argument.find('c') != std::string::npos) return true;
    } else if (!argument.starts_with('+')) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::optional<PaneShell> shellOfPane(const ProcessTable& processes, pid_t firstProcess) {
  auto first = processes.state(firstProcess);
  if (!first) return std::nullopt;
  if (first->name == container) {
    auto foreground = processes.state(first->foregroundGroup);
    const auto parent = foreground ? processes.state(foreground->parent) : std::nullopt;
    if (parent && parent->name == container && parent->parent == firstProcess)
      return PaneShell{first->foregroundGroup, *std::move(foreground)};
  }
  return PaneShell{firstProcess, *std::move(first)};
}

PaneLook lookAtPane(const ProcessTable& processes, pid_t firstProcess, const std::string& tty) {
  const auto busyIf = [](bool busy) { return busy ? PaneLook::busy : PaneLook::idle; };
  const auto shell = shellOfPane(processes, firstProcess);
  if (!shell) return PaneLook::busy;
  const ProcessState* const state = &shell->state;
  if (state->foregroundGroup != state->group) return PaneLook::busy;
  const bool plain = isOneOf(state->name, plainShells);
  if (!plain && state->name != "pwsh" && !isOneOf(state->name, editingShells)) return PaneLook::busy;
  if (runsScript(processes.arguments(shell->process))) return PaneLook::busy;
  // The terminal is asked last: that costs more than all before. One that cannot be asked does not tell.
  const auto mode = processes.terminalMode(tty);
  if (!mode) return PaneLook::idle;
  if (plain) {
    const bool tells = mode->hidesLine || !mode->collectsLines || !state->running;
    return tells ? busyIf(mode->hidesLine) : PaneLook::running;
  }
  return busyIf(isOneOf(state->name, knownEditors) ? !mode->editsLine : mode->collectsLines);
}

}  // namespace velmora
