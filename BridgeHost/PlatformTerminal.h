// The terminal adapter of the system that this build is for.
#pragma once

#include <filesystem>
#include <memory>

#include "System/Environment.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// `temporaryDirectory` is where pictures of tabs go. Throws when the adapter cannot be made.
std::unique_ptr<TerminalAutomating> makePlatformTerminal(const Environment& environment,
                                                         const std::filesystem::path& temporaryDirectory);

}  // namespace velmora
