// `velmora sessions`: the terminal's tabs, with what a user can call each.
#pragma once

#include <string>

#include "BridgeModels/Uuid.h"
#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// A line a session, or everything as JSON.
ExitStatus printSessionList(const CommandContext& context, bool json);

/// The state of the bridge, with the policy, as JSON.
ExitStatus printStatusAsJson(const CommandContext& context);

/// The first eight characters of an id, which the other commands take in its place.
std::string shortId(const Uuid& id);

}  // namespace velmora
