#include "LocalControl/UnixSocketClient.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "LocalControl/SocketPlatform.h"
#include "LocalControl/UnixSocketEndpoint.h"

namespace velmora {

UnixSocketConnection UnixSocketClient::connect(const std::filesystem::path& socketURL) {
  UnixSocketConnection connection(SocketPlatform::openStreamSocket());
  if (connection.descriptor() < 0) throw UnixSocketError::system("socket", errno);
  const auto address = UnixSocketEndpoint::address(socketURL);
  if (::connect(connection.descriptor(), reinterpret_cast<const sockaddr*>(&address),
                UnixSocketEndpoint::addressLength) != 0) {
    throw UnixSocketError::system("connect", errno);
  }
  connection.verifyPeer(::geteuid());
  return connection;
}

}  // namespace velmora
