// Reads the settings as the bridge does when it starts, to say what they come to.
#pragma once

#include <filesystem>

#include "VelmoraHelper/Commands/Check.h"

namespace velmora {

/// Names the session policy that the file leads to. A key that no setting has fails the check: the bridge
/// passes over it, and the default holds. An empty path or no file means the defaults.
Check checkSettings(const std::filesystem::path& file);

/// What the settings come to for agents: where they may type, and what is kept of it. Unreadable ones count
/// as the defaults.
Check checkLimits(const std::filesystem::path& file);

}  // namespace velmora
