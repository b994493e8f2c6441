// A file of its own although short: the part that all systems share.
#include "TerminalAutomation/Tmux/ProcessTable.h"

#include <fcntl.h>
#include <signal.h>
#include <termios.h>

#include <cerrno>

#include "System/FileDescriptor.h"

namespace velmora {

std::optional<TerminalMode> systemTerminalMode(const std::string& tty) {
  const FileDescriptor terminal(::open(tty.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  termios mode{};
  if (!terminal || ::tcgetattr(terminal.get(), &mode) != 0) return std::nullopt;
  const auto has = [](tcflag_t flags, tcflag_t flag) { return (flags & flag) != 0; };
  const bool collects = has(mode.c_lflag, ICANON);
  // Measured with bash, zsh and fish: readline and fish take Return as it is, zsh's editor reads NL as CR
  // too; zsh's questions and `read -n 1` do neither. All leave the signals on but while they quote a key.
  const bool editor = !has(mode.c_iflag, ICRNL) || has(mode.c_iflag, INLCR);
  return TerminalMode{.collectsLines = collects,
                      .editsLine = !collects && editor && has(mode.c_lflag, ISIG),
                      .hidesLine = collects && !has(mode.c_lflag, ECHO)};
}

bool isNoProcess(pid_t process) { return ::kill(process, 0) != 0 && errno == ESRCH; }

}  // namespace velmora
