#include "TerminalAutomation/Tmux/DesktopTerminal.h"

#include <utility>

#include "System/FindProgram.h"

namespace velmora {

SystemDesktopTerminal::SystemDesktopTerminal(Environment environment)
    : environment_(std::move(environment)) {}

bool SystemDesktopTerminal::open(const std::vector<std::string>& command) {
  if (!environment_.contains("DISPLAY") && !environment_.contains("WAYLAND_DISPLAY")) return false;
  std::vector<std::string> terminal;
  if (const auto chosen = findProgram("xdg-terminal-exec", environment_)) {
    terminal = {chosen->string()};
  } else if (const auto usual = findProgram("x-terminal-emulator", environment_)) {
    terminal = {usual->string(), "-e"};
  } else {
    return false;
  }
  // The shell starts the terminal and ends, so the terminal is nobody's child to wait for here. The words of
  // the command pass as arguments: nothing of them is read as shell text.
  ChildRequest request{.program = "/bin/sh",
                       .arguments = {"-c", "\"$@\" </dev/null >/dev/null 2>&1 &", "sh"},
                       .environment = {},
                       .deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2),
                       .outputLimit = 65536,
                       .ownSession = true};
  request.arguments.insert(request.arguments.end(), terminal.begin(), terminal.end());
  request.arguments.insert(request.arguments.end(), command.begin(), command.end());
  // A terminal inside tmux would refuse to attach.
  auto environment = environment_;
  environment.erase("TMUX");
  environment.erase("TMUX_PANE");
  request.environment = environmentList(environment);
  const ChildResult result = runner_.run(request);
  return result.end == ChildResult::End::exited && result.exitStatus == 0;
}

}  // namespace velmora
