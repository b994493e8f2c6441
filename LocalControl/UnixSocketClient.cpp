#include "LocalControl/UnixSocketClient.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "LocalControl/SocketPlatform.h"
#include "LocalControl/UnixSocketEndpoint.h"

namespace velmora {

namespace {

UnixSocketConnection newSocket() {
  UnixSocketConnection connection(SocketPlatform::openStreamSocket());
  if (connection.descriptor() < 0) throw UnixSocketError::system("socket", errno);
  return connection;
}

UnixSocketConnection connected(UnixSocketConnection connection, const std::filesystem::path& socketURL) {
  const auto address = UnixSocketEndpoint::address(socketURL);
  if (::connect(connection.descriptor(), reinterpret_cast<const sockaddr*>(&address),
                UnixSocketEndpoint::addressLength) != 0) {
    throw UnixSocketError::system("connect", errno);
  }
  connection.verifyPeer(::geteuid());
  return connection;
}

}  // namespace

UnixSocketConnection UnixSocketClient::connect(const std::filesystem::path& socketURL) {
  return connected(newSocket(), socketURL);
}

UnixSocketConnection UnixSocketClient::connectWithoutBlocking(const std::filesystem::path& socketURL) {
  auto connection = newSocket();
  const int flags = ::fcntl(connection.descriptor(), F_GETFL);
  if (flags < 0 || ::fcntl(connection.descriptor(), F_SETFL, flags | O_NONBLOCK) != 0) {
    throw UnixSocketError::system("fcntl", errno);
  }
  return connected(std::move(connection), socketURL);
}

}  // namespace velmora
