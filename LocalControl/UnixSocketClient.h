// Connects to a server's socket.
#pragma once

#include <filesystem>

#include "LocalControl/UnixSocketConnection.h"

namespace velmora {

/// Stateless; any thread.
namespace UnixSocketClient {

/// A connection to the server at `socketURL`, which must run as the effective user. Throws system("socket"),
/// unsafeEndpoint (a path that does not fit), system("connect"), peerRejected.
UnixSocketConnection connect(const std::filesystem::path& socketURL);

}  // namespace UnixSocketClient

}  // namespace velmora
