// The tmux servers of a user, besides the one that the bridge looks at.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

#include "System/Environment.h"
#include "VelmoraHelper/Commands/Check.h"

namespace velmora {

/// The sockets at which a server answers: in the folder where tmux puts them for `user` in this environment,
/// and beside that of the bridge's server. Never waits.
std::vector<std::filesystem::path> answeringTmuxServers(const Environment& environment, uid_t user,
                                                        const std::filesystem::path& socketOfBridge);

/// What the bridge's server is, and which others there are. Fails when only others answer.
Check checkTmuxServers(const std::filesystem::path& socketOfBridge,
                       const std::vector<std::filesystem::path>& servers);

}  // namespace velmora
