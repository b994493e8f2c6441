// Whose a file is, and whether it is one.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>

namespace velmora {

struct FileStanding {
  enum class Kind { regular, link, other };

  Kind kind = Kind::regular;
  uid_t owner = 0;
  gid_t group = 0;
  mode_t mode = 0600;     ///< The permission bits.
  std::size_t names = 1;  ///< How many names (hard links) the file has.
};

/// What stands at the path, a link itself rather than what it leads to; nothing when there is nothing. Throws
/// std::system_error when that cannot be known. Any thread.
std::optional<FileStanding> fileStanding(const std::filesystem::path& path);

/// Gives the file to a group, if the system lets this user do so.
void offerToGroup(const std::filesystem::path& path, gid_t group) noexcept;

}  // namespace velmora
