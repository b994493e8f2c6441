// The few socket calls that differ between the systems. Each reports failure as the system does: an empty
// value or -1, with the reason in errno. Stateless; any thread.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <optional>

#include "System/Environment.h"
#include "System/FileDescriptor.h"

namespace velmora {

namespace SocketPlatform {

/// A new Unix stream socket, close-on-exec.
FileDescriptor openStreamSocket();

/// The next waiting connection of a listening socket: blocking, close-on-exec.
FileDescriptor acceptConnection(int listening);

/// As `write`, except that a peer that has gone gives EPIPE and never a signal.
ssize_t writeToSocket(int descriptor, const void* bytes, std::size_t count);

/// What a connect(2) that failed with `error` says about the listener's queue of connections.
enum class ListenerQueue {
  full,        ///< A moment later there may be room.
  fullOrGone,  ///< Full, or nobody listens any more: the system uses one number for both.
  other,       ///< Something else is wrong.
};
ListenerQueue listenerQueue(int error);

/// The effective user of the process at the other end.
std::optional<uid_t> peerUser(int descriptor);

/// The process that listens, or listened when the connection was made, at the other end of a connected
/// socket.
std::optional<pid_t> peerProcess(int descriptor);

/// Whether the peer of a connected socket has closed its end. One that only sends no more has not, nor does
/// it count that this end reads no more.
bool peerHasLeft(int descriptor);

/// The directory that the system keeps for this user's temporary files, when it has one.
std::optional<std::filesystem::path> userTemporaryDirectory(const Environment& environment);

}  // namespace SocketPlatform

}  // namespace velmora
