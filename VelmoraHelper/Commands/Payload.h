// The typed payload of a tool call made from the command line.
#pragma once

#include <optional>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "VelmoraHelper/Commands/CallCommand.h"

namespace velmora {

/// The application answers within five seconds, whatever its terminal does.
inline constexpr std::chrono::seconds questionDeadline{10};

/// `payload` counts only without an `error`.
template <class Payload>
struct PayloadAnswer {
  Payload payload{};
  std::optional<StructuredError> error{};
};

/// Calls the tool without arguments. An answer that cannot be read is an error too: the application is of
/// another version.
template <class Payload>
PayloadAnswer<Payload> payloadOf(const CommandContext& context, ToolName tool) {
  const auto response = answerOf(context, tool, {}, questionDeadline);
  if (!response.ok) return {.error = response.error.value_or(StructuredError{.message = "The call failed."})};
  try {
    return {.payload = decodeJson<Payload>(encodeJson(response.data.value_or(JSONObject{})))};
  } catch (const JsonDecodeError&) {
    return {.error =
                StructuredError{.code = ErrorCode::bridgeUnavailable,
                                .message = "Velmora's answer could not be read.",
                                .operation = std::string(wireName(tool)),
                                .recoverySuggestion = "Update Velmora and velmora to the same version."}};
  }
}

}  // namespace velmora
