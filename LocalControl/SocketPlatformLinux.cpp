#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "LocalControl/SocketPlatform.h"
#include "LocalControl/UnixSocketEndpoint.h"

namespace velmora::SocketPlatform {

FileDescriptor openStreamSocket() { return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)); }

FileDescriptor acceptConnection(int listening) {
  return FileDescriptor(::accept4(listening, nullptr, nullptr, SOCK_CLOEXEC));
}

std::pair<FileDescriptor, FileDescriptor> openPipe() {
  int ends[2] = {-1, -1};
  if (::pipe2(ends, O_CLOEXEC) != 0) return {};
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

ssize_t writeToSocket(int descriptor, const void* bytes, std::size_t count) {
  return ::send(descriptor, bytes, count, MSG_NOSIGNAL);
}

std::optional<uid_t> peerUser(int descriptor) {
  ucred credentials{};
  socklen_t length = sizeof credentials;
  if (::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &credentials, &length) != 0) return std::nullopt;
  if (length != sizeof credentials) return std::nullopt;
  return credentials.uid;
}

// An MCP client may start the helper without XDG_RUNTIME_DIR; the place where the login manager puts that
// directory then leads both ends to the same socket.
std::optional<std::filesystem::path> userTemporaryDirectory(const Environment& environment) {
  const auto stated = environment.find("XDG_RUNTIME_DIR");
  if (stated != environment.end() && UnixSocketEndpoint::isOwnDirectory(stated->second))
    return stated->second;
  const auto usual = std::filesystem::path("/run/user") / std::to_string(::geteuid());
  if (UnixSocketEndpoint::isOwnDirectory(usual)) return usual;
  return std::nullopt;
}

}  // namespace velmora::SocketPlatform
