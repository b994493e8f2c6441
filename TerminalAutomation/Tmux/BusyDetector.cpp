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

bool paneIsBusy(const ProcessTable& processes, pid_t firstProcess, const std::string& tty) {
  const auto state = processes.state(firstProcess);
  if (!state || state->foregroundGroup != state->group) return true;
  const bool plain = isOneOf(state->name, plainShells);
  if (!plain && state->name != "pwsh" && !isOneOf(state->name, editingShells)) return true;
  if (runsScript(processes.arguments(firstProcess))) return true;
  // The terminal is asked last: that costs more than all before. One that cannot be asked does not tell.
  const auto mode = processes.terminalMode(tty);
  if (plain && !state->running) return mode && mode->hidesLine;
  if (!mode) return false;
  return isOneOf(state->name, knownEditors) ? !mode->editsLine : mode->collectsLines;
}

}  // namespace velmora
