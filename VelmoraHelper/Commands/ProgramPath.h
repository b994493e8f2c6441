// Where this program lies, for the configuration of those who will launch it.
#pragma once

#include <filesystem>
#include <string>

#include "System/Environment.h"

namespace velmora {

/// The absolute path under which this program was started: `invokedAs` is its argument zero. A link to the
/// program stays a link, since that is what survives an update. Falls back to `runningFile`.
std::filesystem::path programPath(const std::string& invokedAs, const Environment& environment,
                                  const std::filesystem::path& runningFile);

}  // namespace velmora
