#include "LocalControl/UnixSocketClient.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "LocalControl/UnixSocketEndpoint.h"
#include "System/SocketPlatform.h"

namespace velmora {

namespace {

FileDescriptor newSocket() {
  auto socket = SocketPlatform::openStreamSocket();
  if (!socket) throw UnixSocketError::system("socket", errno);
  return socket;
}

UnixSocketConnection connected(FileDescriptor socket, const std::filesystem::path& socketURL) {
  UnixSocketConnection connection(std::move(socket));
  const auto address = UnixSocketEndpoint::address(socketURL);
  if (UnixSocketEndpoint::isOfAnother(socketURL, ::geteuid())) throw UnixSocketError::peerRejected();
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
  auto socket = newSocket();
  setNonBlocking(socket);
  return connected(std::move(socket), socketURL);
}

bool UnixSocketClient::isAnswering(const std::filesystem::path& socketURL) {
  try {
    connectWithoutBlocking(socketURL);
    return true;
  } catch (const UnixSocketError& error) {
    return error.operation() == "connect" &&
           SocketPlatform::listenerQueue(error.code()) == SocketPlatform::ListenerQueue::full;
  }
}

}  // namespace velmora
