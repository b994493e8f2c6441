// What descriptors need beyond their owner: calls that fail with an exception.
#include "System/FileDescriptor.h"

#include <fcntl.h>

#include <system_error>

namespace velmora {

FileDescriptor openFile(const std::filesystem::path& path, int flags, mode_t mode) {
  FileDescriptor descriptor(::open(path.c_str(), flags | O_CLOEXEC, mode));
  if (!descriptor) throw std::system_error(errno, std::generic_category(), "open " + path.string());
  return descriptor;
}

void setNonBlocking(const FileDescriptor& descriptor) {
  const int flags = ::fcntl(descriptor.get(), F_GETFL);
  if (flags < 0 || ::fcntl(descriptor.get(), F_SETFL, flags | O_NONBLOCK) != 0)
    throw std::system_error(errno, std::generic_category(), "fcntl");
}

}  // namespace velmora
