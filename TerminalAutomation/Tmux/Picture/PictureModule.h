// The drawing of pictures as a library of its own that is loaded with the first picture: Pango, Cairo and
// what they bring cost a bridge that draws none three megabytes.
#pragma once

#include <filesystem>
#include <string>

#include "TerminalAutomation/Tmux/Picture/PanePicture.h"

namespace velmora {

/// Where this program has the library: "lib/velmora" beside the folder of its own file. Its name holds the
/// version, so that a program never loads one of another. Empty when the system does not say what file the
/// program is.
std::filesystem::path pictureModuleFile();

/// What renderPanePicture of the library `module` gives, which stays loaded. Throws std::runtime_error, also
/// when it cannot be loaded, for a path that is not absolute, and for a library that is not root's or this
/// user's own, as its folder, or that others may write to. Any thread.
std::string drawWithModule(const std::filesystem::path& module, const PaneScreen& screen);

}  // namespace velmora
