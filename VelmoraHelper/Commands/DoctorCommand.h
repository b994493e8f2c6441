// `velmora doctor`: what is wrong, and what to do about it.
#pragma once

#include <vector>

#include "VelmoraHelper/Commands/Check.h"
#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// Looks at everything between an MCP client and the terminal. What cannot be known because an earlier check
/// failed is left out.
std::vector<Check> examine(const CommandContext& context);

/// Prints one line a check, or JSON. Fails when one of them did.
ExitStatus printDiagnosis(const CommandContext& context, bool json = false);

}  // namespace velmora
