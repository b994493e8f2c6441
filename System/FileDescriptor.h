// Owns one file descriptor, and the few operations that every user of one needs.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <utility>

namespace velmora {

/// Closes its descriptor when it is destroyed or given another. Move-only; a moved-from one holds none.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}
  ~FileDescriptor() { close(); }

  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
      close();
      descriptor_ = std::exchange(other.descriptor_, -1);
    }
    return *this;
  }

  int get() const noexcept { return descriptor_; }
  explicit operator bool() const noexcept { return descriptor_ >= 0; }

  void close() noexcept {
    // Not repeated on EINTR: the descriptor is gone then too, and its number may be someone else's.
    if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
  }

 private:
  int descriptor_ = -1;
};

/// Opens a file close-on-exec. `flags` and `mode` are open(2)'s. Throws std::system_error that names the
/// path.
FileDescriptor openFile(const std::filesystem::path& path, int flags, mode_t mode = 0);

/// Throws std::system_error.
void setNonBlocking(const FileDescriptor& descriptor);

struct Pipe {
  FileDescriptor read;
  FileDescriptor write;
};

/// A pipe with both ends close-on-exec. Throws std::system_error.
Pipe openPipe();

/// Offers `bytes` to `write`, which answers as write(2) does, until they are all taken or it fails; returns
/// what is left. errno says why anything is.
template <class Write>
std::string_view writeWith(Write&& write, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = write(bytes.data(), bytes.size());
    if (count <= 0) break;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return bytes;
}

/// Writes what `descriptor` takes; returns what is left. A signal does not stop it; errno says what did
/// (EAGAIN when a non-blocking descriptor is full).
inline std::string_view writeTo(const FileDescriptor& descriptor, std::string_view bytes) {
  return writeWith(
      [&descriptor](const char* data, std::size_t size) {
        ssize_t count = 0;
        do count = ::write(descriptor.get(), data, size);
        while (count < 0 && errno == EINTR);
        return count;
      },
      bytes);
}

}  // namespace velmora
