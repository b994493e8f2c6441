// A caller's end of the channel, the simple way: one call at a time, and it blocks. (The helper has its own,
// BridgeCalls.)
#pragma once

#include <filesystem>
#include <optional>

#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/LocalControlMessages.h"
#include "LocalControl/UnixSocketClient.h"
#include "System/Mutex.h"

namespace velmora {

/// Connects with the first `send` and keeps that connection for its whole life, after a failure too: once
/// the stream has broken, a new client is needed. A monitor: one `send` runs at a time, on any thread.
class LocalControlClient {
 public:
  explicit LocalControlClient(std::filesystem::path socketURL) : socketURL_(std::move(socketURL)) {}

  /// Blocks for the answer. Throws UnixSocketError, LocalControlCodecError, JsonEncodeError,
  /// JsonDecodeError.
  LocalControlResponse send(const LocalControlRequest& request) {
    const MutexLock lock(mutex_);
    if (!connection_) connection_.emplace(UnixSocketClient::connect(socketURL_));
    connection_->writeFrame(LocalControlCodec::frame(request));
    return LocalControlCodec::decode<LocalControlResponse>(connection_->readFrame());
  }

 private:
  const std::filesystem::path socketURL_;
  Mutex mutex_;
  std::optional<UnixSocketConnection> connection_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
