// The application's end of the helper's connections, played by the test in its own thread: nothing happens
// unless the test says so.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <list>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/LocalControlMessages.h"
#include "LocalControl/UnixSocketConnection.h"

namespace velmora::testing {

class FakeApplication {
 public:
  struct Received {
    std::list<UnixSocketConnection>::iterator connection;
    LocalControlRequest request;
  };

  /// What BridgeCalls asks for a connection.
  UnixSocketConnection connect() {
    if (isCrowded) throw UnixSocketError::system("connect", EAGAIN);
    if (!isRunning) throw UnixSocketError::system("connect", ENOENT);
    int ends[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) {
      throw std::system_error(errno, std::generic_category(), "socketpair");
    }
    ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
    connections.emplace_back(FileDescriptor(ends[1]));
    ++connected;
    return UnixSocketConnection(FileDescriptor(ends[0]));
  }

  /// The requests that have arrived since the last time, connection by connection.
  std::vector<Received> receive() {
    std::vector<Received> received;
    for (auto connection = connections.begin(); connection != connections.end(); ++connection) {
      pollfd waiting{.fd = connection->descriptor(), .events = POLLIN, .revents = 0};
      if (::poll(&waiting, 1, 0) == 1 && (waiting.revents & POLLHUP) == 0) {
        received.push_back(
            {connection, LocalControlCodec::decode<LocalControlRequest>(connection->readFrame())});
      }
    }
    return received;
  }

  /// The one request that has arrived.
  Received receiveOne() {
    auto received = receive();
    if (received.size() != 1) throw std::runtime_error(std::to_string(received.size()) + " requests");
    return std::move(received.front());
  }

  static void answer(const Received& received, LocalControlResponse response) {
    response.requestId = received.request.requestId;
    received.connection->writeFrame(LocalControlCodec::frame(response));
  }

  /// The application ends: its connections are closed.
  void close() { connections.clear(); }

  bool isRunning = true;
  bool isCrowded = false;  ///< Its queue of connections is full.
  int connected = 0;       ///< How many connections were ever made.
  std::list<UnixSocketConnection> connections{};
};

}  // namespace velmora::testing
