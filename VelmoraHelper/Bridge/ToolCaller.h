// Forwards one tool call to the running application.
#pragma once

#include <functional>
#include <string>

#include "BridgeModels/JSONValue.h"
#include "BridgeModels/ToolName.h"
#include "BridgeModels/Uuid.h"
#include "LocalControl/LocalControlMessages.h"

namespace velmora {

/// Sends a request to the application and waits for its answer. Throws what LocalControlClient::send throws.
using BridgeCalling = std::function<LocalControlResponse(const LocalControlRequest&)>;

/// Turns a failure to reach the application into an answer that says what to do about it. Stateless apart
/// from its two functions; as thread-safe as they are.
class ToolCaller {
 public:
  ToolCaller(BridgeCalling bridge, UuidSource newId) : bridge_(std::move(bridge)), newId_(std::move(newId)) {}

  /// The application's answer; one with `ok` false when the application could not be asked.
  LocalControlResponse call(ToolName tool, JSONObject arguments, LocalClientInput client) const;

 private:
  BridgeCalling bridge_;
  UuidSource newId_;
};

}  // namespace velmora
