#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "BridgeCore/HistoryStore/StoreFileSystem.h"

namespace velmora {

namespace {

[[noreturn]] void fail(const char* operation, const std::filesystem::path& path) {
  throw std::system_error(errno, std::generic_category(), std::string(operation) + " " + path.string());
}

class Descriptor {
 public:
  Descriptor(const std::filesystem::path& path, int flags, mode_t mode = 0)
      : number_(::open(path.c_str(), flags | O_CLOEXEC, mode)) {
    if (number_ < 0) fail("open", path);
  }
  ~Descriptor() { ::close(number_); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return number_; }

 private:
  int number_;
};

bool wasInterrupted(ssize_t result) { return result < 0 && errno == EINTR; }

void flush(const Descriptor& file, const std::filesystem::path& path) {
  while (::fsync(file.number()) != 0) {
    if (errno == EINVAL) return;  // the file system cannot flush this kind of file
    if (errno != EINTR) fail("flush", path);
  }
}

}  // namespace

bool PosixStoreFileSystem::exists(const std::filesystem::path& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

std::string PosixStoreFileSystem::read(const std::filesystem::path& path) {
  const Descriptor file(path, O_RDONLY);
  struct stat status {};
  if (::fstat(file.number(), &status) != 0) fail("read", path);
  // One byte more than the file has, so that its end shows without growing the buffer.
  std::string bytes(static_cast<std::size_t>(status.st_size) + 1, '\0');
  std::size_t filled = 0;
  while (true) {
    const auto count = ::read(file.number(), bytes.data() + filled, bytes.size() - filled);
    if (wasInterrupted(count)) continue;
    if (count < 0) fail("read", path);
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
    if (filled == bytes.size()) bytes.resize(bytes.size() * 2);
  }
  bytes.resize(filled);
  return bytes;
}

void PosixStoreFileSystem::create(const std::filesystem::path& path, std::string_view bytes) {
  const Descriptor file(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, S_IRUSR | S_IWUSR);
  while (!bytes.empty()) {
    const auto count = ::write(file.number(), bytes.data(), bytes.size());
    if (wasInterrupted(count)) continue;
    if (count < 0) fail("write", path);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  flush(file, path);
}

void PosixStoreFileSystem::rename(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (::rename(from.c_str(), to.c_str()) != 0) fail("rename", from);
}

void PosixStoreFileSystem::remove(const std::filesystem::path& path) {
  if (::unlink(path.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) fail("remove", path);
}

void PosixStoreFileSystem::setMode(const std::filesystem::path& path, mode_t mode) {
  if (::chmod(path.c_str(), mode) != 0) fail("change mode of", path);
}

void PosixStoreFileSystem::createDirectories(const std::filesystem::path& path) {
  std::filesystem::create_directories(path);
}

void PosixStoreFileSystem::flushDirectory(const std::filesystem::path& path) {
  flush(Descriptor(path, O_RDONLY | O_DIRECTORY), path);
}

}  // namespace velmora
