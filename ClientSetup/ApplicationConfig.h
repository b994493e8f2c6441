// Where a user's desktop applications keep their configuration. One .cpp file per platform.
#pragma once

#include <filesystem>

#include "System/Environment.h"

namespace velmora {

/// From the environment alone; empty when it names no home. Pure; any thread.
std::filesystem::path applicationConfigDirectory(const Environment& environment);

}  // namespace velmora
