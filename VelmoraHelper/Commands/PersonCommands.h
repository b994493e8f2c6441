// The commands with which a user looks after agents, for the command line.
#pragma once

#include "VelmoraHelper/Commands/CommandContext.h"

namespace CLI {
class App;
}

namespace velmora {

/// Adds them to `app`; the one that is given runs while the command line is parsed, and leaves its exit
/// status in `status`. Both must outlive the parsing.
void addPersonCommands(CLI::App& app, const CommandContext& context, ExitStatus& status);

}  // namespace velmora
