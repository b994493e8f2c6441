// Connects to a server's socket.
#pragma once

#include <filesystem>

#include "LocalControl/UnixSocketConnection.h"

namespace velmora {

/// Stateless; any thread.
namespace UnixSocketClient {

/// A connection to the server at `socketURL`, which must run as the effective user. Throws system("socket"),
/// unsafeEndpoint (a path that does not fit), system("connect"), peerRejected. A socket file of another user
/// is not connected to at all.
UnixSocketConnection connect(const std::filesystem::path& socketURL);

/// The same, without ever waiting: a server whose queue of connections is full gives system("connect", EAGAIN
/// or ECONNREFUSED). The connection's descriptor does not block either, so its frames cannot be read and
/// written with `readFrame` and `writeFrame`.
UnixSocketConnection connectWithoutBlocking(const std::filesystem::path& socketURL);

/// Whether a server of the effective user listens at `socketURL`. Never waits: one whose queue of connections
/// is full listens. (A system that has the same error for a full queue and for no server says no then.)
bool isAnswering(const std::filesystem::path& socketURL);

}  // namespace UnixSocketClient

}  // namespace velmora
