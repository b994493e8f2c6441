// Hands each request to the coordinator's operation for its tool and turns the result into a response.
#pragma once

#include <string>
#include <string_view>

#include "BridgeCore/BridgeCoordinator.h"
#include "BridgeModels/Json/JsonPart.h"
#include "LocalControl/LocalControlMessages.h"

namespace velmora {

/// Stateless apart from its coordinator, which must outlive it; thread-safe.
class LocalControlRouter {
 public:
  explicit LocalControlRouter(BridgeCoordinator& coordinator) : coordinator_(coordinator) {}

  /// The response to a request, both as JSON text. The request is parsed once, and the response is written
  /// once, from the coordinator's result. Whatever fails with the request is a response with `ok` false;
  /// throws JsonDecodeError for text that is no request.
  std::string answer(std::string_view request, const Caller& caller = {});

  /// The same for a request that is a record already. Never throws for the request's sake.
  LocalControlResponse route(const LocalControlRequest& request);

 private:
  std::string responseTo(const LocalControlCall<JsonMembers>& call, Caller caller);

  BridgeCoordinator& coordinator_;
};

}  // namespace velmora
