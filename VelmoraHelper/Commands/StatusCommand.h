// `velmora status`: how the bridge stands, for people.
#pragma once

#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// Prints the bridge's state, the terminal, the permission and the sessions. Fails when the application does
/// not say them.
ExitStatus printStatus(const CommandContext& context);

}  // namespace velmora
