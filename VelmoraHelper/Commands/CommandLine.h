// The command line of `velmora`.
#pragma once

#include <string>
#include <vector>

#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// Does what the arguments (without the program's own name) ask for. Returns the exit status, which is a
/// failure when `out` could not be written.
int runCommandLine(const CommandContext& context, std::vector<std::string> arguments);

}  // namespace velmora
