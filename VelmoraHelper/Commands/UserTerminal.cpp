#include "VelmoraHelper/Commands/UserTerminal.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>

#include "System/FileDescriptor.h"

namespace velmora {

std::optional<std::string> lineTypedAtTerminal(const std::string& prompt, std::chrono::seconds patience) {
  const FileDescriptor terminal(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY));
  if (!terminal || !writeTo(terminal, prompt).empty()) return std::nullopt;
  const auto end = std::chrono::steady_clock::now() + patience;
  std::string line;
  while (line.find('\n') == std::string::npos) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    pollfd watched{terminal.get(), POLLIN, 0};
    if (left.count() <= 0 || (::poll(&watched, 1, static_cast<int>(left.count())) <= 0 && errno != EINTR))
      return std::nullopt;
    char character = 0;
    if (::read(terminal.get(), &character, 1) != 1) return std::nullopt;
    line += character;
  }
  line.erase(line.find('\n'));
  return line;
}

}  // namespace velmora
