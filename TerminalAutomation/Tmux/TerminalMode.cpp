#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include "TerminalAutomation/Tmux/ProcessTable.h"

namespace velmora {

std::optional<bool> terminalCollectsLines(const std::string& tty) {
  const int terminal = open(tty.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (terminal < 0) return std::nullopt;
  termios mode{};
  const int result = tcgetattr(terminal, &mode);
  close(terminal);
  if (result != 0) return std::nullopt;
  return (mode.c_lflag & ICANON) != 0;
}

}  // namespace velmora
