// Where the running application lies.
#pragma once

#include <filesystem>

namespace velmora::mac {

/// The application's bundle, such as /Applications/Velmora.app; for a program without one, its folder. The
/// helper that MCP clients launch is Contents/Helpers/velmora in it. Any thread.
std::filesystem::path applicationBundlePath();

}  // namespace velmora::mac
