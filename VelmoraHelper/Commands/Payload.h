// The typed payload of a tool call made from the command line.
#pragma once

#include <optional>

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
  static const boost::json::value none(boost::json::object_kind);
  const auto answer = answerOf(context, tool, {&none}, questionDeadline);
  if (!answer.result.ok) return {.error = errorOf(answer)};
  try {
    PayloadAnswer<Payload> read;
    JsonReader(answer.result.data ? *answer.result.data->value : none).read(read.payload);
    return read;
  } catch (const JsonDecodeError&) {
    return {.error =
                StructuredError{.code = ErrorCode::bridgeUnavailable,
                                .message = "Velmora's answer could not be read.",
                                .operation = std::string(wireName(tool)),
                                .recoverySuggestion = "Update Velmora and velmora to the same version."}};
  }
}

}  // namespace velmora
