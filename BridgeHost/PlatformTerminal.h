// The terminal adapter of the system that this build is for.
#pragma once

#include <filesystem>
#include <memory>

#include "System/Environment.h"
#include "System/Log.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// `temporaryDirectory` is where pictures of tabs go; `log` hears of what the adapter had to do without.
/// Throws when the adapter cannot be made.
std::unique_ptr<TerminalAutomating> makePlatformTerminal(const Environment& environment,
                                                         const std::filesystem::path& temporaryDirectory,
                                                         const Log& log);

}  // namespace velmora
