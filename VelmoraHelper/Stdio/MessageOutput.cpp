#include "VelmoraHelper/Stdio/MessageOutput.h"

#include <limits.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace velmora {

namespace {

bool isSocket(int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode);
}

}  // namespace

MessageOutput::MessageOutput(int descriptor) : descriptor_(descriptor), isSocket_(isSocket(descriptor)) {}

// A pipe that is ready takes PIPE_BUF bytes without blocking, but perhaps no more; a socket can be told not
// to block.
void MessageOutput::flush() {
  while (pending() > 0 && canBeWritten()) {
    const auto* begin = pending_.data() + written_;
    const auto count = isSocket_ ? ::send(descriptor_, begin, pending(), MSG_DONTWAIT)
                                 : ::write(descriptor_, begin, std::min<std::size_t>(pending(), PIPE_BUF));
    if (count >= 0) {
      written_ += static_cast<std::size_t>(count);
    } else if (errno != EINTR && errno != EAGAIN && errno != EWOULDBLOCK) {
      throw std::system_error(errno, std::generic_category(), "write");
    }
  }
  if (pending() > 0) return;
  pending_.clear();
  written_ = 0;
}

bool MessageOutput::canBeWritten() const {
  pollfd waiting{.fd = descriptor_, .events = POLLOUT, .revents = 0};
  // An error is reported by the write itself.
  return ::poll(&waiting, 1, 0) > 0;
}

}  // namespace velmora
