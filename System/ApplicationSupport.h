// Where a user's applications keep their data. One .cpp file per platform.
#pragma once

#include <filesystem>

#include "System/Environment.h"

namespace velmora {

/// The user's directory for application data, from the environment alone. Throws std::runtime_error when
/// the environment names no home. Pure; any thread.
std::filesystem::path applicationSupportDirectory(const Environment& environment);

}  // namespace velmora
