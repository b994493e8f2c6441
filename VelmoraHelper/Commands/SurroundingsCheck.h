// What lies around the bridge and is often wrong: the disk, the user, the locale, the clients' files. Each
// check looks and changes nothing.
#pragma once

#include <vector>

#include "VelmoraHelper/Commands/Check.h"
#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// What is worth telling of the disk, of sudo, of a runtime folder that is passed over and of a locale
/// without UTF-8; nothing of what is as usual.
std::vector<Check> checkSurroundings(const CommandContext& context);

/// Finds that this is root in place of the user who called sudo.
std::optional<Check> checkUser(uid_t user, const Environment& environment);

/// One for each client whose own configuration has an entry for this machine's helper, or cannot be read.
std::vector<Check> checkClients(const CommandContext& context);

/// Which process serves. Nothing when that is not known. Fails when its program was replaced since it
/// started.
std::vector<Check> checkProcess(const CommandContext& context);

/// What to do about a bridge that takes connections and does not answer.
std::string stepsForHangingBridge(const CommandContext& context);

}  // namespace velmora
