#include "VelmoraHelper/Bridge/BridgeConnection.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "LocalControl/LocalControlCodec.h"
#include "System/SocketPlatform.h"

namespace velmora {

namespace {

bool wouldBlock() { return errno == EAGAIN || errno == EWOULDBLOCK; }

}  // namespace

bool BridgeConnection::isReady() const {
  char byte = 0;
  return ::recv(descriptor(), &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0 && wouldBlock();
}

void BridgeConnection::begin(std::string frame) {
  request_ = std::move(frame);
  written_ = 0;
  answer_.clear();
}

std::optional<std::string> BridgeConnection::advance() {
  if (isWriting()) write();
  if (isWriting() || !read(LocalControlCodec::headerSize)) return std::nullopt;
  std::array<char, LocalControlCodec::headerSize> header{};
  std::copy_n(answer_.begin(), header.size(), header.begin());
  if (!read(header.size() + LocalControlCodec::payloadSize(header))) return std::nullopt;
  return std::exchange(answer_, {});
}

void BridgeConnection::write() {
  while (isWriting()) {
    const auto count =
        SocketPlatform::writeToSocket(descriptor(), request_.data() + written_, request_.size() - written_);
    if (count > 0) {
      written_ += static_cast<std::size_t>(count);
    } else if (wouldBlock()) {
      return;
    } else if (errno != EINTR) {
      throw UnixSocketError::system("write", errno);
    }
  }
}

// Reads until the answer has `size` bytes; false when there is no more to read for now. Nothing beyond the
// frame is taken.
bool BridgeConnection::read(std::size_t size) {
  while (answer_.size() < size) {
    const auto begin = answer_.size();
    answer_.resize(size);
    const auto count = ::read(descriptor(), answer_.data() + begin, size - begin);
    const int reason = errno;
    answer_.resize(begin + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    errno = reason;
    if (count == 0) throw UnixSocketError::disconnected();
    if (count < 0 && wouldBlock()) return false;
    if (count < 0 && errno != EINTR) throw UnixSocketError::system("read", errno);
  }
  return true;
}

}  // namespace velmora
