#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>

#include "System/SocketPlatform.h"
#include "System/Utf8.h"

namespace velmora::SocketPlatform {

namespace {

// Close-on-exec cannot be asked for on creation here, so a fork between the two calls may still inherit.
bool setCloseOnExec(const FileDescriptor& descriptor) {
  return ::fcntl(descriptor.get(), F_SETFD, FD_CLOEXEC) == 0;
}

}  // namespace

FileDescriptor openStreamSocket() {
  FileDescriptor descriptor(::socket(AF_UNIX, SOCK_STREAM, 0));
  if (!descriptor || !setCloseOnExec(descriptor)) return {};
  return descriptor;
}

FileDescriptor acceptConnection(int listening) {
  FileDescriptor descriptor(::accept(listening, nullptr, nullptr));
  if (!descriptor || !setCloseOnExec(descriptor)) return {};
  // An accepted socket takes over O_NONBLOCK from the listening one.
  const int flags = ::fcntl(descriptor.get(), F_GETFL);
  if (flags < 0 || ::fcntl(descriptor.get(), F_SETFL, flags & ~O_NONBLOCK) != 0) return {};
  return descriptor;
}

// The option is set before each write, not once at the start: it cannot be set on a socket whose peer has
// left already (EINVAL), and an accepted socket may be one of those.
ssize_t writeToSocket(int descriptor, const void* bytes, std::size_t count) {
  const int on = 1;
  if (::setsockopt(descriptor, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on) != 0) {
    if (errno == EINVAL) errno = EPIPE;
    return -1;
  }
  return ::write(descriptor, bytes, count);
}

ListenerQueue listenerQueue(int error) {
  return error == ECONNREFUSED ? ListenerQueue::fullOrGone : ListenerQueue::other;
}

std::optional<uid_t> peerUser(int descriptor) {
  uid_t user = 0;
  gid_t group = 0;
  if (::getpeereid(descriptor, &user, &group) != 0) return std::nullopt;
  return user;
}

std::optional<pid_t> peerProcess(int descriptor) {
  pid_t process = 0;
  socklen_t length = sizeof process;
  if (::getsockopt(descriptor, SOL_LOCAL, LOCAL_PEERPID, &process, &length) != 0) return std::nullopt;
  if (length != sizeof process) return std::nullopt;
  return process;
}

// To poll, an end that reads no more looks like a peer that has left.
bool peerHasLeft(int descriptor) {
  sockaddr_un peer{};
  socklen_t length = sizeof peer;
  return ::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &length) != 0;
}

std::optional<std::filesystem::path> userTemporaryDirectory(const Environment&) {
  const auto needed = ::confstr(_CS_DARWIN_USER_TEMP_DIR, nullptr, 0);
  if (needed < 1) return std::nullopt;
  std::string text(needed, '\0');
  if (::confstr(_CS_DARWIN_USER_TEMP_DIR, text.data(), text.size()) < 1) return std::nullopt;
  return repairUtf8(text.substr(0, text.find('\0')));
}

}  // namespace velmora::SocketPlatform
