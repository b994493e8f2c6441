// The folders of a user's files on Linux, by the rules for base directories that all desktops share.
#pragma once

#include <filesystem>

#include "BridgeModels/Environment.h"

namespace velmora {

/// What `variable` says; without it, or when that is no absolute path, the folder `underHome` of the home.
/// Empty when the environment names no home either. Any thread.
std::filesystem::path baseDirectory(const Environment& environment, const char* variable,
                                    const char* underHome);

}  // namespace velmora
