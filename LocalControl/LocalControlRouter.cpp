#include "LocalControl/LocalControlRouter.h"

#include <tuple>

#include "BridgeCore/StructuredErrorMapper.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/Tools.h"
#include "LocalControl/LocalControlCodec.h"

namespace velmora {

namespace {

using Call = LocalControlCall<JsonMembers>;

// The coordinator's operation for each tool, in the order of ToolName.
constexpr std::tuple operations{
    &BridgeCoordinator::status,        &BridgeCoordinator::listSessions,  &BridgeCoordinator::activeSession,
    &BridgeCoordinator::createSession, &BridgeCoordinator::sendCommand,   &BridgeCoordinator::sendKey,
    &BridgeCoordinator::readOutput,    &BridgeCoordinator::captureScreen, &BridgeCoordinator::focusSession,
};

template <class Tool>
ToolResult<typename Tool::Payload> resultOf(BridgeCoordinator& coordinator, const Call& call,
                                            const Caller& caller) {
  constexpr auto operation = std::get<static_cast<std::size_t>(Tool::name)>(operations);
  const ClientIdentitySummary client{call.client.name, call.client.version};
  if constexpr (std::is_same_v<typename Tool::Input, EmptyInput>) {
    return (coordinator.*operation)(call.requestId, client, caller);  // whatever the arguments are
  } else {
    typename Tool::Input input{};
    JsonReader(*call.arguments.value).read(input);
    return (coordinator.*operation)(call.requestId, client, input, caller);
  }
}

// The payload travels as a dynamic value, whose keys have no order of their own and are therefore sorted.
template <class Payload>
std::string encoded(const ToolResult<Payload>& result) {
  ToolResult<KeysSorted<Payload>> response{
      .requestId = result.requestId, .ok = result.ok, .warnings = result.warnings, .error = result.error};
  if (result.data) response.data = KeysSorted<Payload>{&*result.data};
  return encodeJson(response);
}

StructuredError answerTooLarge(std::string_view operation, std::size_t bytes) {
  return {
      .code = ErrorCode::internalError,
      .message = "The answer has " + std::to_string(bytes) + " bytes; " +
                 std::to_string(LocalControlCodec::maximumPayloadSize) + " fit into one message.",
      .operation = std::string(operation),
      .retryable = false,
      .recoverySuggestion = "Ask for less: a smaller maxCharacters, or close sessions that are not needed."};
}

std::string refusal(const Call& call, StructuredError error) {
  return encodeJson(
      LocalControlResponse{.requestId = call.requestId, .ok = false, .error = std::move(error)});
}

}  // namespace

std::string LocalControlRouter::answer(std::string_view request, const Caller& caller) {
  return withJson(request, [&](const boost::json::value& document) {
    Call call;
    JsonReader(document).read(call);
    return responseTo(call, caller);
  });
}

LocalControlResponse LocalControlRouter::route(const LocalControlRequest& request) {
  return decodeJson<LocalControlResponse>(answer(encodeJson(request)));
}

std::string LocalControlRouter::responseTo(const Call& call, const Caller& caller) {
  const auto operation = wireName(call.operation);
  if (call.protocolVersion != localControlProtocolVersion) {
    return refusal(call, StructuredErrorMapper::invalidArgument(unsupportedProtocolVersionMessage, operation,
                                                                std::nullopt));
  }
  try {
    auto response = visitTool(call.operation, [&]<class Tool>(const Tool&) {
      return encoded(resultOf<Tool>(coordinator_, call, caller));
    });
    if (response.size() <= LocalControlCodec::maximumPayloadSize) return response;
    return refusal(call, answerTooLarge(operation, response.size()));  // no frame could carry it
  } catch (...) {  // undecodable arguments, or a payload that JSON cannot carry
    return refusal(call, StructuredErrorMapper::map(std::current_exception(), operation, std::nullopt));
  }
}

}  // namespace velmora
