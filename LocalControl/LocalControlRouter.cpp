#include "LocalControl/LocalControlRouter.h"

#include <stdexcept>

#include "BridgeCore/StructuredErrorMapper.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"

namespace velmora {

namespace {

LocalControlResponse refusal(const LocalControlRequest& request, StructuredError error) {
  return {.requestId = request.requestId, .ok = false, .error = std::move(error)};
}

// The payload becomes a dynamic value by way of its JSON text, so that it reads exactly as it is written.
template <class Payload>
LocalControlResponse responseOf(ToolResult<Payload> result) {
  LocalControlResponse response{.requestId = result.requestId,
                                .ok = result.ok,
                                .warnings = std::move(result.warnings),
                                .error = std::move(result.error)};
  if (result.data) response.data = decodeJson<JSONValue>(encodeJson(*result.data));
  return response;
}

template <class Input>
Input inputOf(const LocalControlRequest& request) {
  return decodeJson<Input>(encodeJson(request.arguments));
}

}  // namespace

LocalControlResponse LocalControlRouter::route(const LocalControlRequest& request) {
  const auto operation = wireName(request.operation);
  if (request.protocolVersion != localControlProtocolVersion) {
    return refusal(request, StructuredErrorMapper::invalidArgument(unsupportedProtocolVersionMessage,
                                                                   operation, std::nullopt));
  }
  const auto& id = request.requestId;
  const ClientIdentitySummary client{request.client.name, request.client.version};
  try {
    switch (request.operation) {
      case ToolName::status:
        return responseOf(coordinator_.status(id, client));
      case ToolName::listSessions:
        return responseOf(coordinator_.listSessions(id, client, inputOf<ListSessionsInput>(request)));
      case ToolName::getActiveSession:
        return responseOf(coordinator_.activeSession(id, client));
      case ToolName::createSession:
        return responseOf(coordinator_.createSession(id, client, inputOf<CreateSessionInput>(request)));
      case ToolName::sendCommand:
        return responseOf(coordinator_.sendCommand(id, client, inputOf<SendCommandInput>(request)));
      case ToolName::sendKey:
        return responseOf(coordinator_.sendKey(id, client, inputOf<SendKeyInput>(request)));
      case ToolName::readOutput:
        return responseOf(coordinator_.readOutput(id, client, inputOf<ReadOutputInput>(request)));
      case ToolName::captureScreen:
        return responseOf(coordinator_.captureScreen(id, client, inputOf<SessionTargetInput>(request)));
      case ToolName::focusSession:
        return responseOf(coordinator_.focusSession(id, client, inputOf<SessionTargetInput>(request)));
    }
    throw std::logic_error("a tool without a route");
  } catch (...) {  // undecodable arguments, or a payload that JSON cannot carry
    return refusal(request, StructuredErrorMapper::map(std::current_exception(), operation, std::nullopt));
  }
}

}  // namespace velmora
