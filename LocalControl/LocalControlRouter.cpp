#include "LocalControl/LocalControlRouter.h"

#include <tuple>

#include "BridgeCore/StructuredErrorMapper.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/Tools.h"
#include "LocalControl/AnswerSize.h"

namespace velmora {

namespace {

using Call = LocalControlCall<JsonMembers>;

// The coordinator's operation for each tool, in the order of ToolName.
constexpr std::tuple operations{
    &BridgeCoordinator::status,        &BridgeCoordinator::listSessions,  &BridgeCoordinator::activeSession,
    &BridgeCoordinator::createSession, &BridgeCoordinator::sendCommand,   &BridgeCoordinator::sendKey,
    &BridgeCoordinator::readOutput,    &BridgeCoordinator::captureScreen, &BridgeCoordinator::focusSession,
};

// What the plain form does not know: an argument is ignored, a key is unknown.
template <class Input>
void leaveOutExtended(Input& input) {
  clearExtended(input);
  if constexpr (std::is_same_v<Input, SendKeyInput>) {
    if (isExtended(input.key)) throw JsonDecodeError("key: unknown value");
  }
}

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
    if (!caller.extended) leaveOutExtended(input);
    return (coordinator.*operation)(call.requestId, client, input, caller);
  }
}

// The payload travels as a dynamic value, whose keys have no order of their own and are therefore sorted.
template <class Payload>
std::string encoded(const ToolResult<Payload>& result, bool extended) {
  ToolResult<KeysSorted<Payload>> response{
      .requestId = result.requestId, .ok = result.ok, .warnings = result.warnings, .error = result.error};
  if (extended) response.extended = true;
  if (result.data) response.data = KeysSorted<Payload>{&*result.data};
  return encodeJson(response);
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

std::string LocalControlRouter::responseTo(const Call& call, Caller caller) {
  caller.extended = call.extended.value_or(false);
  if (caller.extended && caller.send && call.progress.value_or(false)) {
    caller.hearLastLine = [send = caller.send, id = call.requestId](const std::string& line) {
      send(encodeJson(LocalControlProgress{.requestId = id, .lastLine = line}));
    };
  }
  const auto operation = wireName(call.operation);
  if (call.protocolVersion != localControlProtocolVersion) {
    return refusal(call, StructuredErrorMapper::invalidArgument(unsupportedProtocolVersionMessage, operation,
                                                                std::nullopt));
  }
  try {
    auto response = visitTool(call.operation, [&]<class Tool>(const Tool&) {
      return encoded(resultOf<Tool>(coordinator_, call, caller), caller.extended);
    });
    if (response.size() <= LocalControlCodec::maximumPayloadSize) return response;
    return refusal(call, answerTooLarge(operation, response.size()));  // no frame could carry it
  } catch (...) {  // undecodable arguments, or a payload that JSON cannot carry
    return refusal(call, StructuredErrorMapper::map(std::current_exception(), operation, std::nullopt));
  }
}

}  // namespace velmora
