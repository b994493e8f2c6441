// `velmora status`: the state of the bridge.
#pragma once

#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// Prints the bridge's state, whether it accepts connections, the terminal, the permission and the sessions.
/// Fails when the application does not report them.
ExitStatus printStatus(const CommandContext& context);

}  // namespace velmora
