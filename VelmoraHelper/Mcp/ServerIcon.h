// The application's icon, for clients that show one beside the server's name.
#pragma once

#include <string_view>

namespace velmora {

/// A PNG of 64 by 64 pixels, from packaging/mcp/icon.png.
extern const std::string_view serverIcon;

}  // namespace velmora
