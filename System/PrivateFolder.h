// A folder that only the user may enter, checked and used through one descriptor.
#pragma once

#include <filesystem>
#include <system_error>

#include "System/FileDescriptor.h"

namespace velmora {

/// What stands in a private folder's place is another user's, or no directory.
class ForeignFolder : public std::system_error {
 public:
  explicit ForeignFolder(const std::filesystem::path& path);
};

/// The folder is the user's own, and still the system does not open it: there is no descriptor left, for
/// instance.
class UnopenableFolder : public std::system_error {
 public:
  using std::system_error::system_error;
};

/// Whether `path` is absolute and names a directory (no link to one) of the effective user. Any thread.
bool isOwnDirectory(const std::filesystem::path& path);

/// Makes the folder, with its parents, and gives it mode 0700. In a shared directory someone else may have
/// made it, or a link, first; the checks and the change go through the descriptor, so that what is checked is
/// what is changed and handed out. Throws std::filesystem::filesystem_error when it cannot be made,
/// ForeignFolder (it is left as it is), UnopenableFolder, and another std::system_error when its mode cannot
/// be set. Any thread.
FileDescriptor openPrivateFolder(const std::filesystem::path& path);

}  // namespace velmora
