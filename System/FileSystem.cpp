#include "System/FileSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "System/FileDescriptor.h"

namespace velmora {

namespace {

[[noreturn]] void fail(const char* operation, const std::filesystem::path& path) {
  throw std::system_error(errno, std::generic_category(), std::string(operation) + " " + path.string());
}

[[noreturn]] void refuse(std::errc reason, const std::filesystem::path& path) {
  throw std::system_error(std::make_error_code(reason), "read " + path.string());
}

bool wasInterrupted(ssize_t result) { return result < 0 && errno == EINTR; }

void flush(const FileDescriptor& file, const std::filesystem::path& path) {
  while (::fsync(file.get()) != 0) {
    if (errno == EINVAL) return;  // the file system cannot flush this kind of file
    if (errno != EINTR) fail("flush", path);
  }
}

}  // namespace

bool PosixFileSystem::exists(const std::filesystem::path& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) == 0) return true;
  // Nothing is there. Whether that is certain says the nearest folder above it that is: a link that leads
  // nowhere may lead somewhere again, once its disk is there.
  for (auto folder = path; errno == ENOENT && folder.has_relative_path();) {
    folder = folder.parent_path();
    if (::lstat(folder.c_str(), &status) == 0)
      return S_ISLNK(status.st_mode) && ::stat(folder.c_str(), &status) != 0;
  }
  return errno != ENOENT && errno != ENOTDIR;
}

std::string PosixFileSystem::read(const std::filesystem::path& path) {
  // Without O_NONBLOCK a pipe in the file's place would hold the caller up.
  const auto file = openFile(path, O_RDONLY | O_NONBLOCK);
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) fail("read", path);
  if (S_ISDIR(status.st_mode)) refuse(std::errc::is_a_directory, path);
  if (!S_ISREG(status.st_mode)) refuse(std::errc::not_supported, path);
  if (static_cast<std::size_t>(status.st_size) > mostBytesRead) refuse(std::errc::file_too_large, path);
  // One byte more than the file has, so that its end shows without growing the buffer.
  std::string bytes(static_cast<std::size_t>(status.st_size) + 1, '\0');
  std::size_t filled = 0;
  while (true) {
    const auto count = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
    if (wasInterrupted(count)) continue;
    if (count < 0) fail("read", path);
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
    if (filled > mostBytesRead) refuse(std::errc::file_too_large, path);
    if (filled == bytes.size()) bytes.resize(bytes.size() * 2);
  }
  bytes.resize(filled);
  return bytes;
}

std::optional<double> PosixFileSystem::lastWritten(const std::filesystem::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) return static_cast<double>(status.st_mtime);
  if (errno == ENOENT || errno == ENOTDIR) return std::nullopt;
  fail("look at", path);
}

std::optional<std::filesystem::path> PosixFileSystem::linkTarget(const std::filesystem::path& path) {
  std::error_code none;
  if (!std::filesystem::is_symlink(path, none) || !std::filesystem::is_regular_file(path, none))
    return std::nullopt;
  return std::filesystem::canonical(path);
}

std::vector<std::filesystem::path> PosixFileSystem::filesBeginningWith(const std::filesystem::path& prefix) {
  std::vector<std::filesystem::path> found;
  std::error_code missing;
  const auto folder = prefix.parent_path();
  if (!std::filesystem::is_directory(folder, missing)) return found;
  const auto start = prefix.filename().string();
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().filename().string().starts_with(start) && !entry.is_directory())
      found.push_back(entry.path());
  }
  return found;
}

void PosixFileSystem::create(const std::filesystem::path& path, std::string_view bytes) {
  const auto file = openFile(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, S_IRUSR | S_IWUSR);
  if (!writeTo(file, bytes).empty()) fail("write", path);
  flush(file, path);
}

void PosixFileSystem::rename(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (::rename(from.c_str(), to.c_str()) != 0) fail("rename", from);
}

void PosixFileSystem::remove(const std::filesystem::path& path) {
  if (::unlink(path.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) fail("remove", path);
}

void PosixFileSystem::setMode(const std::filesystem::path& path, mode_t mode) {
  if (::chmod(path.c_str(), mode) != 0) fail("change mode of", path);
}

void PosixFileSystem::createDirectories(const std::filesystem::path& path) {
  std::filesystem::create_directories(path);
}

void PosixFileSystem::flushDirectory(const std::filesystem::path& path) {
  flush(openFile(path, O_RDONLY | O_DIRECTORY), path);
}

}  // namespace velmora
