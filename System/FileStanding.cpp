#include "System/FileStanding.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace velmora {

std::optional<FileStanding> fileStanding(const std::filesystem::path& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return std::nullopt;
    throw std::system_error(errno, std::generic_category(), "look at " + path.string());
  }
  using Kind = FileStanding::Kind;
  return FileStanding{.kind = S_ISREG(status.st_mode)   ? Kind::regular
                              : S_ISLNK(status.st_mode) ? Kind::link
                                                        : Kind::other,
                      .owner = status.st_uid,
                      .group = status.st_gid,
                      .mode = static_cast<mode_t>(status.st_mode & 07777),
                      .names = status.st_nlink};
}

void offerToGroup(const std::filesystem::path& path, gid_t group) noexcept {
  // Only root and the group's members may; for anyone else the file keeps the user's own group.
  [[maybe_unused]] const int refused = ::lchown(path.c_str(), static_cast<uid_t>(-1), group);
}

}  // namespace velmora
