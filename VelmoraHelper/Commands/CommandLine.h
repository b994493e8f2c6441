// The command line of `velmora`.
#pragma once

#include <string>
#include <vector>

#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// Does what the arguments (without the program's own name) ask for. Returns the exit status.
int runCommandLine(const CommandContext& context, std::vector<std::string> arguments);

}  // namespace velmora
