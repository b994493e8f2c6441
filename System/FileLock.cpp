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

}  // namespace

std::optional<FileLock> FileLock::take(const std::filesystem::path& path) {
  // Without O_NONBLOCK a pipe in the file's place would hold the caller up.
  auto file = openFile(path, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR);
  int result = 0;
  do result = ::flock(file.get(), LOCK_EX | LOCK_NB);
  while (result != 0 && errno == EINTR);
  if (result == 0) return FileLock(std::move(file));
  if (errno == EWOULDBLOCK) return std::nullopt;
  fail("lock");
}

std::string FileLock::text() const { return textOf(file_); }

void FileLock::setText(std::string_view text) {
  if (::ftruncate(file_.get(), 0) != 0) fail("write the lock's text");
  if (::lseek(file_.get(), 0, SEEK_SET) != 0 || !writeTo(file_, text).empty()) fail("write the lock's text");
  if (::fsync(file_.get()) != 0 && errno != EINVAL) fail("flush the lock's text");
}

std::string textOfLock(const std::filesystem::path& path) {
  try {
    return textOf(openFile(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK));
  } catch (const std::system_error&) {
    return {};
  }
}

}  // namespace velmora
