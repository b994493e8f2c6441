// The one call on descriptors that is Linux's own.
#include <fcntl.h>

#include <system_error>

#include "System/FileDescriptor.h"

namespace velmora {

Pipe openPipe() {
  int ends[2] = {-1, -1};
  if (::pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

}  // namespace velmora
