// `velmora pause`, `resume`, `permit`, `policy` and `busy`: what agents may do, set by the user.
#pragma once

#include <string>

#include "BridgeModels/BridgeEnums.h"
#include "VelmoraHelper/Commands/CommandContext.h"
#include "VelmoraHelper/Commands/PersonCalls.h"

namespace velmora {

// Each tells on `out` what holds now, and on `err` why it was refused. What gives agents more asks for a word
// at the user's terminal.

/// Where the bridge wants a word for what was asked: asks the user for it, and gives it back over the same
/// `calls`. The bridge's last answer.
LocalControlResponse confirmed(const CommandContext& context, PersonCalling& calls,
                               LocalControlResponse response);

ExitStatus pauseBridge(const CommandContext& context);
ExitStatus resumeBridge(const CommandContext& context);

/// `session` as the user writes it: a terminal's target, an id or its beginning.
ExitStatus permitSession(const CommandContext& context, const std::string& session,
                         SessionPermission permission);

ExitStatus changePolicy(const CommandContext& context, SessionPolicy policy);

/// Which programs that run agents may type into.
enum class BusyInputChoice { none, ownWindows, all };
ExitStatus changeBusyInput(const CommandContext& context, BusyInputChoice choice);

}  // namespace velmora
