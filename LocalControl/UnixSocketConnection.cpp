#include "LocalControl/UnixSocketConnection.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "LocalControl/LocalControlCodec.h"
#include "System/SocketPlatform.h"

namespace velmora {

void UnixSocketConnection::verifyPeer(uid_t expectedUID) const {
  const auto user = SocketPlatform::peerUser(descriptor());
  if (user && *user == expectedUID) return;
  throw UnixSocketError::peerRejected();
}

std::string UnixSocketConnection::readFrame() {
  std::array<char, LocalControlCodec::headerSize> header{};
  readExactly(header.data(), header.size());
  std::string frame(header.size() + LocalControlCodec::payloadSize(header), '\0');
  std::copy(header.begin(), header.end(), frame.begin());
  readExactly(frame.data() + header.size(), frame.size() - header.size());
  return frame;
}

void UnixSocketConnection::writeFrame(std::string_view bytes) {
  const auto write = [this](const char* data, std::size_t size) {
    return SocketPlatform::writeToSocket(descriptor(), data, size);
  };
  if (!writeWith(write, bytes).empty()) throw UnixSocketError::system("write", errno);
}

bool UnixSocketConnection::peerHasLeft() const noexcept { return SocketPlatform::peerHasLeft(descriptor()); }

void UnixSocketConnection::endReading() noexcept { ::shutdown(descriptor(), SHUT_RD); }

void UnixSocketConnection::interrupt() noexcept { ::shutdown(descriptor(), SHUT_RDWR); }

void UnixSocketConnection::readExactly(char* destination, std::size_t count) {
  while (count > 0) {
    const auto received = ::read(descriptor(), destination, count);
    if (received <= 0) throw UnixSocketError::disconnected();
    destination += received;
    count -= static_cast<std::size_t>(received);
  }
}

}  // namespace velmora
