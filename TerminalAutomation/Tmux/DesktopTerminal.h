// Opens a window of the desktop's terminal program on a command.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "TerminalAutomation/Tmux/TmuxProcessTransport.h"

namespace velmora {

/// Thread-safe.
class DesktopTerminal {
 public:
  virtual ~DesktopTerminal() = default;

  /// False when there is no display or no terminal program. The window outlives this process.
  virtual bool open(const std::vector<std::string>& command) = 0;
};

/// Uses xdg-terminal-exec, else x-terminal-emulator -e.
class SystemDesktopTerminal final : public DesktopTerminal {
 public:
  explicit SystemDesktopTerminal(Environment environment);

  bool open(const std::vector<std::string>& command) override;

 private:
  const Environment environment_;
  ChildProcessRunner runner_;
};

}  // namespace velmora
