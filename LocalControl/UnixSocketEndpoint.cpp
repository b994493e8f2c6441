#include "LocalControl/UnixSocketEndpoint.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

namespace velmora::UnixSocketEndpoint {

namespace {

// A trailing slash would make the system follow a link that the path names.
std::filesystem::path withoutTrailingSlash(const std::filesystem::path& path) {
  auto plain = path.lexically_normal();
  return plain.has_filename() ? plain : plain.parent_path();
}

bool isDirectoryOf(const struct stat& status, uid_t user) {
  return S_ISDIR(status.st_mode) && status.st_uid == user;
}

}  // namespace

std::filesystem::path defaultURL(const Environment& environment) {
  return defaultURL(environment, canonicalUserTemporaryDirectory(environment));
}

std::filesystem::path defaultURL(const Environment& environment,
                                 const std::optional<std::filesystem::path>& userTemporaryDirectory) {
  std::filesystem::path base = "/tmp";
  if (userTemporaryDirectory) {
    base = *userTemporaryDirectory;
  } else if (const auto stated = environment.find("TMPDIR");
             stated != environment.end() && std::filesystem::path(stated->second).is_absolute()) {
    base = stated->second;
  }
  return base / directoryName / fileName;
}

std::optional<std::filesystem::path> canonicalUserTemporaryDirectory(const Environment& environment) {
  return SocketPlatform::userTemporaryDirectory(environment);
}

bool isOwnDirectory(const std::filesystem::path& path) {
  struct stat status {};
  return path.is_absolute() && ::lstat(withoutTrailingSlash(path).c_str(), &status) == 0 &&
         isDirectoryOf(status, ::geteuid());
}

void prepareDirectory(const std::filesystem::path& socketURL) {
  const auto directory = socketURL.has_parent_path() ? socketURL.parent_path() : std::filesystem::path(".");
  if (directory.has_parent_path()) std::filesystem::create_directories(directory.parent_path());
  if (::mkdir(directory.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
    throw std::filesystem::filesystem_error("cannot create directory", directory,
                                            std::error_code(errno, std::generic_category()));
  }
  // In a shared directory someone else may have made this one, or a link, first. The checks and the change
  // go through one descriptor, so that what is checked is what is changed.
  const FileDescriptor opened(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat status {};
  if (!opened || ::fstat(opened.get(), &status) != 0 || !isDirectoryOf(status, ::geteuid())) {
    throw UnixSocketError::unsafeEndpoint();
  }
  if (::fchmod(opened.get(), S_IRWXU) != 0) throw UnixSocketError::system("chmod", errno);
}

void removeStaleSocket(const std::filesystem::path& socketURL, uid_t expectedUID) {
  struct stat status {};
  if (::lstat(socketURL.c_str(), &status) != 0) {
    if (errno == ENOENT) return;
    throw UnixSocketError::system("lstat", errno);
  }
  if (status.st_uid != expectedUID) throw UnixSocketError::unsafeEndpoint();
  if (!S_ISSOCK(status.st_mode)) throw UnixSocketError::unsafeEndpoint();
  if (::unlink(socketURL.c_str()) != 0) throw UnixSocketError::system("unlink", errno);
}

sockaddr_un address(const std::filesystem::path& socketURL) {
  static_assert(addressLength == offsetof(sockaddr_un, sun_path) + maximumPathBytes + 1);
  static_assert(addressLength <= sizeof(sockaddr_un));
  const auto& text = socketURL.native();
  if (text.empty() || text.size() > maximumPathBytes) throw UnixSocketError::unsafeEndpoint();
  sockaddr_un result{};
  result.sun_family = AF_UNIX;
  text.copy(result.sun_path, text.size());
  return result;
}

}  // namespace velmora::UnixSocketEndpoint
