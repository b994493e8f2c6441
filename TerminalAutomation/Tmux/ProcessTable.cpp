// A file of its own although short: the part that all systems share.
#include "TerminalAutomation/Tmux/ProcessTable.h"

#include <fcntl.h>
#include <termios.h>

#include "System/FileDescriptor.h"

namespace velmora {

std::optional<bool> terminalCollectsLines(const std::string& tty) {
  const FileDescriptor terminal(::open(tty.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  termios mode{};
  if (!terminal || ::tcgetattr(terminal.get(), &mode) != 0) return std::nullopt;
  return (mode.c_lflag & ICANON) != 0;
}

}  // namespace velmora
