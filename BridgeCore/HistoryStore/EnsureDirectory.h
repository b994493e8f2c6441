// Makes a directory that only the user may enter.
#pragma once

#include <filesystem>

#include "System/FileSystem.h"

namespace velmora {

/// Creates `directory`, with those above it that are missing, and sets its mode to 0700, also when it
/// existed. Throws what the file system reports for the creation, a storage error for the mode.
void ensureDirectory(FileSystem& files, const std::filesystem::path& directory);

}  // namespace velmora
