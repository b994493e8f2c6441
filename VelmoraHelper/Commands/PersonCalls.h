// Calls on the bridge's channel for users. The MCP side of this program never makes one.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/PersonMessages.h"

namespace velmora {

/// One connection to the channel, made by the first call. One call at a time; belongs to one thread.
class PersonCalling {
 public:
  virtual ~PersonCalling() = default;

  /// Blocks for the answer, for as long as `deadline` allows. Whatever fails is an answer, too.
  virtual LocalControlResponse call(PersonVerb verb, JSONObject arguments, std::chrono::seconds deadline) = 0;
};

/// Finds the bridge as the other commands do: `places` are those of the socket of the nine tools, beside
/// which the users' lies. `version` is this program's.
std::unique_ptr<PersonCalling> personCalls(std::vector<std::filesystem::path> places, std::string version);

/// Where the users' sockets lie, beside those of the nine tools.
std::vector<std::filesystem::path> personPlaces(std::vector<std::filesystem::path> places);

/// A request as it travels.
std::string personFrame(PersonVerb verb, JSONObject arguments, const std::string& version);

/// The bridge asks its terminal for five seconds at most.
inline constexpr std::chrono::seconds personDeadline{10};
/// For what gives agents more: the system may ask the user first, who has a minute.
inline constexpr std::chrono::seconds userDeadline{70};

/// `payload` counts only without an `error`.
template <class Payload>
struct PersonAnswer {
  Payload payload{};
  std::vector<StructuredError> warnings{};
  std::optional<StructuredError> error{};
};

/// The arguments that a described record holds.
template <class Input>
JSONObject argumentsOf(const Input& input) {
  return decodeJson<JSONObject>(encodeJson(input));
}

/// The answer, typed. One that cannot be read is an error: the bridge is of another version.
template <class Payload>
PersonAnswer<Payload> personAnswer(const LocalControlResponse& response, PersonVerb verb) {
  PersonAnswer<Payload> answer{.warnings = response.warnings};
  if (!response.ok) {
    answer.error = response.error.value_or(StructuredError{.message = "The call failed."});
    return answer;
  }
  try {
    answer.payload = decodeJson<Payload>(encodeJson(response.data.value_or(JSONObject{})));
  } catch (const JsonDecodeError&) {
    answer.error = StructuredError{.code = ErrorCode::bridgeUnavailable,
                                   .message = "Velmora's answer could not be read.",
                                   .operation = std::string(wireName(verb)),
                                   .recoverySuggestion = "Update Velmora and velmora to the same version."};
  }
  return answer;
}

template <class Payload>
PersonAnswer<Payload> askPerson(PersonCalling& calls, PersonVerb verb, JSONObject arguments = {}) {
  return personAnswer<Payload>(calls.call(verb, std::move(arguments), personDeadline), verb);
}

}  // namespace velmora
