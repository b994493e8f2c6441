// Checks the control socket: its place, owner and mode.
#pragma once

#include <sys/types.h>

#include <filesystem>

#include "VelmoraHelper/Commands/Check.h"

namespace velmora {

/// Looks at the socket and its folder and changes nothing. Both must belong to `user` alone. A socket that
/// does not exist yet is fine.
Check checkSocket(const std::filesystem::path& socketURL, uid_t user);

/// The finding where the system does not let the path be looked at, with lstat's errno.
Check unseenSocket(const std::filesystem::path& path, int code);

}  // namespace velmora
