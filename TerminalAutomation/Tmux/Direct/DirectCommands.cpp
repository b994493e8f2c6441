#include "TerminalAutomation/Tmux/Direct/DirectCommands.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "TerminalAutomation/Tmux/Direct/TmuxMessageWriter.h"

namespace velmora {

namespace {

using Argument = std::vector<std::string>::const_iterator;

constexpr std::array<std::string_view, 21> commands{
    "capture-pane", "copy-mode",    "delete-buffer", "display-message", "has-session",   "if-shell",
    "kill-pane",    "kill-window",  "list-buffers",  "list-clients",    "list-panes",    "list-sessions",
    "load-buffer",  "list-windows", "paste-buffer",  "select-pane",     "select-window", "send-keys",
    "set-buffer",   "show-options", "switch-client"};

/// tmux also ends a command after an argument with ";" at its end, unless a backslash stands before it.
bool endsCommandUnnoticed(const std::string& argument) {
  return argument.size() > 1 && argument.ends_with(';') && !argument.ends_with("\\;");
}

bool mayGoDirectly(Argument first, Argument last) {
  if (first == last || std::find(commands.begin(), commands.end(), *first) == commands.end()) return false;
  if (std::any_of(first, last, endsCommandUnnoticed)) return false;
  // The program would open any other file than its standard input.
  return *first != "load-buffer" || *(last - 1) == "-";
}

}  // namespace

bool mayGoDirectly(const std::vector<std::string>& arguments) {
  Argument first = arguments.begin();
  while (true) {
    const Argument last = std::find(first, arguments.end(), ";");
    if (!mayGoDirectly(first, last)) return false;
    if (last == arguments.end()) return TmuxMessageWriter::commandFits(arguments);
    first = last + 1;
  }
}

}  // namespace velmora
