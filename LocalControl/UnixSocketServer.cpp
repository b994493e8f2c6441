#include "LocalControl/UnixSocketServer.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "LocalControl/UnixSocketEndpoint.h"
#include "System/SocketPlatform.h"

namespace velmora {

namespace {

constexpr int backlog = 8;

// Blocks until a connection waits or `stop` (-1 for none) ends the wait; says whether it was not `stop`.
bool waitForConnection(int listening, int stop) {
  std::array<pollfd, 2> watched{pollfd{listening, POLLIN, 0}, pollfd{stop, POLLIN, 0}};
  while (::poll(watched.data(), watched.size(), /*timeout=*/-1) < 0) {
    if (errno != EINTR) throw UnixSocketError::system("accept", errno);
  }
  return watched[1].revents == 0;
}

}  // namespace

UnixSocketServer::UnixSocketServer(std::filesystem::path socketURL) : socketURL_(std::move(socketURL)) {
  UnixSocketEndpoint::prepareDirectory(socketURL_);
  UnixSocketEndpoint::removeStaleSocket(socketURL_, ::geteuid());
  descriptor_ = SocketPlatform::openStreamSocket();
  if (!descriptor_) throw UnixSocketError::system("socket", errno);
  // Accepting waits in poll. Were accept to block as well, a client that leaves between the two could hold
  // up the end of the program.
  if (::fcntl(descriptor_.get(), F_SETFL, O_NONBLOCK) != 0) throw UnixSocketError::system("socket", errno);
  const auto address = UnixSocketEndpoint::address(socketURL_);
  if (::bind(descriptor_.get(), reinterpret_cast<const sockaddr*>(&address),
             UnixSocketEndpoint::addressLength) != 0) {
    throw UnixSocketError::system("bind", errno);
  }
  if (::chmod(socketURL_.c_str(), S_IRUSR | S_IWUSR) != 0) throw UnixSocketError::system("chmod", errno);
  if (::listen(descriptor_.get(), backlog) != 0) throw UnixSocketError::system("listen", errno);
  boundFile_ = ownSocketFile();
}

UnixSocketServer::~UnixSocketServer() { close(); }

void UnixSocketServer::close() noexcept {
  // Before the descriptor is closed: until then no other file can take over the inode's number.
  if (boundFile_ && ownSocketFile() == boundFile_) ::unlink(socketURL_.c_str());
  boundFile_.reset();
  descriptor_.close();
}

UnixSocketConnection UnixSocketServer::acceptConnection() {
  constexpr int never = -1;
  return std::move(*acceptConnectionUntil(never));
}

std::optional<UnixSocketConnection> UnixSocketServer::acceptConnectionUntil(int stopDescriptor) {
  while (waitForConnection(descriptor_.get(), stopDescriptor)) {
    auto accepted = SocketPlatform::acceptConnection(descriptor_.get());
    if (!accepted && (errno == EAGAIN || errno == EWOULDBLOCK)) continue;
    if (!accepted) throw UnixSocketError::system("accept", errno);
    UnixSocketConnection connection(std::move(accepted));
    connection.verifyPeer(::geteuid());
    return connection;
  }
  return std::nullopt;
}

std::optional<UnixSocketServer::FileIdentity> UnixSocketServer::ownSocketFile() const {
  struct stat status {};
  if (::lstat(socketURL_.c_str(), &status) != 0) return std::nullopt;
  if (!S_ISSOCK(status.st_mode) || status.st_uid != ::geteuid()) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

}  // namespace velmora
