#include "LocalControl/UnixSocketEndpoint.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <system_error>

#include "System/PrivateFolder.h"

namespace velmora::UnixSocketEndpoint {

namespace fs = std::filesystem;

std::filesystem::path defaultURL(const Environment& environment) {
  return defaultURL(environment, canonicalUserTemporaryDirectory(environment));
}

std::filesystem::path defaultURL(const Environment& environment,
                                 const std::optional<std::filesystem::path>& userTemporaryDirectory) {
  return places(environment, userTemporaryDirectory).front();
}

std::vector<std::filesystem::path> places(const Environment& environment) {
  return places(environment, canonicalUserTemporaryDirectory(environment));
}

std::vector<std::filesystem::path> places(
    const Environment& environment, const std::optional<std::filesystem::path>& userTemporaryDirectory) {
  std::vector<std::filesystem::path> found;
  for (const auto& base :
       {userTemporaryDirectory.value_or(""), environmentPath(environment, "TMPDIR"), fs::path("/tmp")}) {
    const auto place = base / directoryName / fileName;
    if (!base.empty() && std::find(found.begin(), found.end(), place) == found.end()) found.push_back(place);
  }
  return found;
}

std::filesystem::path personURL(const std::filesystem::path& socketURL) {
  return socketURL.parent_path() / personFileName;
}

std::optional<std::filesystem::path> canonicalUserTemporaryDirectory(const Environment& environment) {
  return SocketPlatform::userTemporaryDirectory(environment);
}

void prepareDirectory(const std::filesystem::path& socketURL) {
  const auto directory = socketURL.has_parent_path() ? socketURL.parent_path() : std::filesystem::path(".");
  try {
    openPrivateFolder(directory);
  } catch (const ForeignFolder&) {
    throw UnixSocketError::unsafeEndpoint();
  } catch (const UnopenableFolder& error) {
    throw UnixSocketError::system("open", error.code().value());
  } catch (const std::filesystem::filesystem_error&) {
    throw;
  } catch (const std::system_error& error) {
    throw UnixSocketError::system("chmod", error.code().value());
  }
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

bool isOfAnother(const std::filesystem::path& socketURL, uid_t user) noexcept {
  struct stat status {};
  return ::lstat(socketURL.c_str(), &status) == 0 && status.st_uid != user;
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
