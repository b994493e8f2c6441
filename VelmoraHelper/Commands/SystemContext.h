// The real surroundings of a command.
#pragma once

#include <string>

#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// Standard streams, the application at its usual place, the system's programs, each within its deadline.
/// `invokedAs` is this program's argument zero.
CommandContext systemContext(const std::string& version, const std::string& invokedAs,
                             const Environment& environment);

}  // namespace velmora
