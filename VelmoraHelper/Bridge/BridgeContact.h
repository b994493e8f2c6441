// Finds the application among the places where its socket may be.
#pragma once

#include <filesystem>
#include <vector>

#include "LocalControl/UnixSocketConnection.h"

namespace velmora {

struct BridgeContact {
  UnixSocketConnection connection;  ///< Its descriptor does not block.
  std::filesystem::path socketURL;
};

/// Connects to the first of `places` at which somebody of this user listens. Never waits. Throws
/// UnixSocketError: that of a full queue of connections, else what the first place gave.
BridgeContact contactBridge(const std::vector<std::filesystem::path>& places);

}  // namespace velmora
