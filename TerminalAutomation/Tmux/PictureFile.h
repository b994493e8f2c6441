// Puts a picture where a client can read it and nobody else can.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "BridgeModels/Uuid.h"

namespace velmora {

/// Writes `png` to "Velmora/terminal-<id>.png" in `temporaryDirectory`: a new file for its owner alone, in a
/// folder of its own (made when it is missing, refused when it is another user's or a link). Returns the
/// absolute path. Throws std::system_error; nothing is left of a file that could not be written.
std::filesystem::path writePictureFile(const std::filesystem::path& temporaryDirectory, const Uuid& id,
                                       std::string_view png);

}  // namespace velmora
