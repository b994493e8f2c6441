// The one call on descriptors that macOS does in two steps.
#include <fcntl.h>

#include <system_error>

#include "System/FileDescriptor.h"

namespace velmora {

// Close-on-exec cannot be asked for on creation here, so a fork between the calls may still inherit.
Pipe openPipe() {
  int ends[2] = {-1, -1};
  if (::pipe(ends) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  Pipe pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
  for (const int end : ends) {
    if (::fcntl(end, F_SETFD, FD_CLOEXEC) != 0)
      throw std::system_error(errno, std::generic_category(), "fcntl");
  }
  return pipe;
}

}  // namespace velmora
