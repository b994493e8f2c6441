#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "System/PrivateFolder.h"
#include "System/SocketPlatform.h"

namespace velmora::SocketPlatform {

FileDescriptor openStreamSocket() { return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)); }

FileDescriptor acceptConnection(int listening) {
  return FileDescriptor(::accept4(listening, nullptr, nullptr, SOCK_CLOEXEC));
}

ssize_t writeToSocket(int descriptor, const void* bytes, std::size_t count) {
  return ::send(descriptor, bytes, count, MSG_NOSIGNAL);
}

namespace {

std::optional<ucred> peerCredentials(int descriptor) {
  ucred credentials{};
  socklen_t length = sizeof credentials;
  if (::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &credentials, &length) != 0) return std::nullopt;
  if (length != sizeof credentials) return std::nullopt;
  return credentials;
}

}  // namespace

// A non-blocking connect finds the queue full with this number, a socket that nobody serves with another.
ListenerQueue listenerQueue(int error) {
  return error == EAGAIN ? ListenerQueue::full : ListenerQueue::other;
}

std::optional<uid_t> peerUser(int descriptor) {
  const auto credentials = peerCredentials(descriptor);
  return credentials ? std::optional(credentials->uid) : std::nullopt;
}

std::optional<pid_t> peerProcess(int descriptor) {
  const auto credentials = peerCredentials(descriptor);
  return credentials ? std::optional(credentials->pid) : std::nullopt;
}

bool peerHasLeft(int descriptor) {
  pollfd end{descriptor, 0, 0};
  return ::poll(&end, 1, /*timeout=*/0) > 0 && (end.revents & (POLLHUP | POLLERR)) != 0;
}

// An MCP client may start the helper without XDG_RUNTIME_DIR; the place where the login manager puts that
// directory then leads both ends to the same socket.
std::optional<std::filesystem::path> userTemporaryDirectory(const Environment& environment) {
  const std::filesystem::path stated = environmentValue(environment, "XDG_RUNTIME_DIR");
  if (isOwnDirectory(stated)) return stated;
  const auto usual = std::filesystem::path("/run/user") / std::to_string(::geteuid());
  if (isOwnDirectory(usual)) return usual;
  return std::nullopt;
}

}  // namespace velmora::SocketPlatform
