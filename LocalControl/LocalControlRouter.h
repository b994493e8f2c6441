// Hands each decoded request to the coordinator's operation for its tool and turns the result into a
// response.
#pragma once

#include "BridgeCore/BridgeCoordinator.h"
#include "LocalControl/LocalControlMessages.h"

namespace velmora {

/// Stateless apart from its coordinator, which must outlive it; thread-safe.
class LocalControlRouter {
 public:
  explicit LocalControlRouter(BridgeCoordinator& coordinator) : coordinator_(coordinator) {}

  /// Never throws for the request's sake; every failure is a response with `ok` false.
  LocalControlResponse route(const LocalControlRequest& request);

 private:
  BridgeCoordinator& coordinator_;
};

}  // namespace velmora
