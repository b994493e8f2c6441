// One connection to the application, which carries one call after another and never blocks.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "LocalControl/UnixSocketConnection.h"

namespace velmora {

/// Made from a connection whose descriptor does not block. A call is one frame out and one frame back, or
/// several where the request asks for more than the answer; a call begins when the one before has ended.
/// After a failure, discard the connection. Not thread-safe.
class BridgeConnection {
 public:
  explicit BridgeConnection(UnixSocketConnection connection) : connection_(std::move(connection)) {}

  int descriptor() const { return connection_.descriptor(); }

  /// Whether part of the request is still to be written.
  bool isWriting() const { return written_ < request_.size(); }

  /// Between two calls: whether the application is still there and has sent nothing unasked.
  bool isReady() const;

  /// Begins a call. `frame` is the whole request frame.
  void begin(std::string frame);

  /// Writes and reads what it can without waiting. Returns the next whole frame, or nothing until there is
  /// more to read. Throws system("write"), disconnected, system("read"), and LocalControlCodecError for a
  /// length that is out of range.
  std::optional<std::string> advance();

 private:
  void write();
  bool read(std::size_t size);

  UnixSocketConnection connection_;
  std::string request_{};
  std::size_t written_ = 0;
  std::string answer_{};  // what has been read of the answer frame
};

}  // namespace velmora
