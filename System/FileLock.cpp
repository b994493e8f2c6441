#include "System/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace velmora {

namespace {

[[noreturn]] void fail(const char* operation) {
  throw std::system_error(errno, std::generic_category(), operation);
}

std::string textOf(const FileDescriptor& file) {
  std::string text(4096, '\0');
  const auto count = ::pread(file.get(), text.data(), text.size(), 0);
  if (count < 0) fail("read the lock's text");
  text.resize(static_cast<std::size_t>(count));
  return text;
}

int lockNow(const FileDescriptor& file) {
  while (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EINTR) return errno;
  }
  return 0;
}

}  // namespace

std::optional<FileLock> FileLock::take(const std::filesystem::path& path) {
  // Without O_NONBLOCK a pipe in the file's place would hold the caller up. A file that is open for writing
  // would keep its disk from being made read-only.
  constexpr int flags = O_CREAT | O_NOFOLLOW | O_NONBLOCK;
  auto file = openFile(path, O_RDONLY | flags, S_IRUSR | S_IWUSR);
  int error = lockNow(file);
  if (error == EBADF) {  // NFS wants it open for writing
    file = openFile(path, O_RDWR | flags, S_IRUSR | S_IWUSR);
    error = lockNow(file);
  }
  if (error == 0) return FileLock(std::move(file), path);
  if (error == EWOULDBLOCK) return std::nullopt;
  throw std::system_error(error, std::generic_category(), "lock " + path.string());
}

std::string FileLock::text() const { return textOf(file_); }

void FileLock::setText(std::string_view text) {
  const auto file = openFile(path_, O_WRONLY | O_TRUNC | O_NOFOLLOW | O_NONBLOCK);
  if (!writeTo(file, text).empty()) fail("write the lock's text");
  if (::fsync(file.get()) != 0 && errno != EINVAL) fail("flush the lock's text");
}

std::string textOfLock(const std::filesystem::path& path) {
  try {
    return textOf(openFile(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK));
  } catch (const std::system_error&) {
    return {};
  }
}

}  // namespace velmora
