#include "System/PrivateFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace velmora {

namespace {

// A trailing slash would make the system follow a link that the path names.
std::filesystem::path withoutTrailingSlash(const std::filesystem::path& path) {
  auto plain = path.lexically_normal();
  return plain.has_filename() ? plain : plain.parent_path();
}

bool isOwnDirectory(const struct stat& status) {
  return S_ISDIR(status.st_mode) && status.st_uid == ::geteuid();
}

// A strict umask makes folders that not even their owner may open; that is mended first.
FileDescriptor openedFolder(const std::filesystem::path& path) {
  const auto open = [&path] {
    return FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  };
  auto folder = open();
  if (folder) return folder;
  const int reason = errno;
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || !isOwnDirectory(status)) throw ForeignFolder(path);
  if (reason == EACCES && ::fchmodat(AT_FDCWD, path.c_str(), S_IRWXU, AT_SYMLINK_NOFOLLOW) == 0)
    folder = open();
  if (folder) return folder;
  throw UnopenableFolder(reason, std::generic_category(), "open " + path.string());
}

}  // namespace

ForeignFolder::ForeignFolder(const std::filesystem::path& path)
    : std::system_error(EPERM, std::generic_category(), path.string() + " is no directory of this user") {}

bool isOwnDirectory(const std::filesystem::path& path) {
  struct stat status {};
  return path.is_absolute() && ::lstat(withoutTrailingSlash(path).c_str(), &status) == 0 &&
         isOwnDirectory(status);
}

FileDescriptor openPrivateFolder(const std::filesystem::path& path) {
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path());
  if (::mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
    throw std::filesystem::filesystem_error("cannot create directory", path,
                                            std::error_code(errno, std::generic_category()));
  }
  auto folder = openedFolder(path);
  struct stat status {};
  if (::fstat(folder.get(), &status) != 0 || !isOwnDirectory(status)) throw ForeignFolder(path);
  if (::fchmod(folder.get(), S_IRWXU) != 0)
    throw std::system_error(errno, std::generic_category(), "chmod " + path.string());
  return folder;
}

}  // namespace velmora
