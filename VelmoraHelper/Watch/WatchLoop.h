// `velmora watch` on a terminal: waits for keys and for the bridge, and draws.
#pragma once

#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// Until the user quits or the terminal goes. `places` are those of the socket of the nine tools. Throws
/// UnusableTerminal.
ExitStatus watchOnScreen(const CommandContext& context, const std::vector<std::filesystem::path>& places,
                         const Environment& environment);

}  // namespace velmora
