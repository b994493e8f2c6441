#include "System/PrivateFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

FileDescriptor openDirectory(const std::filesystem::path& path) {
  return FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
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
  auto folder = openDirectory(path);
  if (!folder && errno == EACCES && isOwnDirectory(std::filesystem::absolute(path)) &&
      ::chmod(path.c_str(), S_IRWXU) == 0) {
    folder = openDirectory(path);  // its own user, or a mask, had closed it
  }
  if (!folder && errno != ENOTDIR && errno != ELOOP && errno != EACCES)
    throw std::system_error(errno, std::generic_category(), "open " + path.string());
  struct stat status {};
  if (!folder || ::fstat(folder.get(), &status) != 0 || !isOwnDirectory(status)) throw ForeignFolder(path);
  if (::fchmod(folder.get(), S_IRWXU) != 0)
    throw std::system_error(errno, std::generic_category(), "chmod " + path.string());
  return folder;
}

}  // namespace velmora
