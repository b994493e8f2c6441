// `velmora config [CLIENT]`: what connects an MCP client.
#pragma once

#include <string>

#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// Prints the client's snippet with this program's own path, and on `err` where it goes; the clients when
/// `client` is empty.
ExitStatus printConfig(const CommandContext& context, const std::string& client);

}  // namespace velmora
