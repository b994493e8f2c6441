#include "VelmoraHelper/Bridge/BridgeContact.h"

#include <optional>

#include "LocalControl/UnixSocketClient.h"
#include "System/SocketPlatform.h"

namespace velmora {

namespace {

bool isFull(const UnixSocketError& error) {
  return error.operation() == "connect" &&
         SocketPlatform::listenerQueue(error.code()) == SocketPlatform::ListenerQueue::full;
}

}  // namespace

BridgeContact contactBridge(const std::vector<std::filesystem::path>& places) {
  std::optional<UnixSocketError> first;
  for (const auto& place : places) {
    try {
      return {UnixSocketClient::connectWithoutBlocking(place), place};
    } catch (const UnixSocketError& error) {
      if (isFull(error)) throw;  // it is there
      if (!first) first = error;
    }
  }
  throw first.value_or(UnixSocketError::unsafeEndpoint());
}

}  // namespace velmora
