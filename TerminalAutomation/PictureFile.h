// Where pictures of tabs are put: "Velmora/terminal-<id>.png" in the temporary directory, where a client can
// read them and nobody else can. The folder is made when it is missing, and refused when it is another user's
// or a link.
#pragma once

#include <filesystem>
#include <string_view>

#include "BridgeModels/Uuid.h"

namespace velmora {

/// The absolute path for a program that writes the picture itself; its folder is there and private. Throws
/// std::system_error. Any thread.
std::filesystem::path pictureFileForProgram(const std::filesystem::path& temporaryDirectory, const Uuid& id);

/// Writes `png` to a new file for its owner alone and returns the absolute path. Throws std::system_error;
/// nothing is left of a file that could not be written. Of the pictures that were written before it removes
/// those that are a day older, and all but the latest 50 with this one. Any thread.
std::filesystem::path writePictureFile(const std::filesystem::path& temporaryDirectory, const Uuid& id,
                                       std::string_view png);

}  // namespace velmora
