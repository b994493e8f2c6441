#include "LocalControl/UnixSocketServer.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "LocalControl/UnixSocketEndpoint.h"
#include "System/SocketPlatform.h"

namespace velmora {

namespace {

constexpr int backlog = 8;

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
  if (isInPlace()) ::unlink(socketURL_.c_str());
  boundFile_.reset();
  descriptor_.close();
}

bool UnixSocketServer::isInPlace() const noexcept { return boundFile_ && ownSocketFile() == boundFile_; }

UnixSocketConnection UnixSocketServer::acceptConnection() {
  while (true) {
    if (auto connection = acceptWaiting()) return std::move(*connection);
    pollfd listening{descriptor_.get(), POLLIN, 0};
    if (::poll(&listening, 1, /*timeout=*/-1) < 0 && errno != EINTR)
      throw UnixSocketError::system("accept", errno);
  }
}

std::optional<UnixSocketConnection> UnixSocketServer::acceptWaiting() {
  auto accepted = SocketPlatform::acceptConnection(descriptor_.get());
  if (!accepted && (errno == EAGAIN || errno == EWOULDBLOCK)) return std::nullopt;
  if (!accepted) throw UnixSocketError::system("accept", errno);
  UnixSocketConnection connection(std::move(accepted));
  connection.verifyPeer(::geteuid());
  return connection;
}

std::optional<UnixSocketServer::FileIdentity> UnixSocketServer::ownSocketFile() const noexcept {
  struct stat status {};
  if (::lstat(socketURL_.c_str(), &status) != 0) return std::nullopt;
  if (!S_ISSOCK(status.st_mode) || status.st_uid != ::geteuid()) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

}  // namespace velmora
