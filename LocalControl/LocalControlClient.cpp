#include "LocalControl/LocalControlClient.h"

#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/UnixSocketClient.h"

namespace velmora {

LocalControlResponse LocalControlClient::send(const LocalControlRequest& request) {
  const MutexLock lock(mutex_);
  if (!connection_) connection_.emplace(UnixSocketClient::connect(socketURL_));
  connection_->writeFrame(LocalControlCodec::frame(request));
  return LocalControlCodec::decode<LocalControlResponse>(connection_->readFrame());
}

}  // namespace velmora
