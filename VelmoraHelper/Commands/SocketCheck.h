// Whether the control socket is where and as it must be.
#pragma once

#include <sys/types.h>

#include <filesystem>

#include "VelmoraHelper/Commands/Check.h"

namespace velmora {

/// Looks at the socket and its folder and changes nothing. Both must belong to `user` alone. A socket that is
/// not there yet is not wrong.
Check checkSocket(const std::filesystem::path& socketURL, uid_t user);

}  // namespace velmora
