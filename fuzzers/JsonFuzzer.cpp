// JSON from outside: any value survives a round trip, and no record's decoder does worse than refuse.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "BridgeModels/BridgeStatus.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/MCPRequestRecord.h"
#include "BridgeModels/PrivacyRetentionSettings.h"
#include "BridgeModels/TerminalOutput.h"
#include "BridgeModels/TerminalSession.h"
#include "BridgeModels/ToolInputs.h"
#include "BridgeModels/ToolPayloads.h"
#include "LocalControl/LocalControlMessages.h"

namespace {

using namespace velmora;

template <class Value>
std::optional<Value> decoded(std::string_view text, JsonFormat format = JsonFormat::wire) {
  try {
    return decodeJson<Value>(text, format);
  } catch (const JsonDecodeError&) {
    return std::nullopt;
  }
}

// What was decoded once must be decoded again, to the same.
template <class Value>
void checkRoundTrip(std::string_view text) {
  const auto value = decoded<Value>(text);
  if (value && decoded<Value>(encodeJson(*value)) != value) std::abort();
}

template <class... Value>
void checkRoundTrips(std::string_view text) {
  (checkRoundTrip<Value>(text), ...);
}

// Dates of the files are ISO 8601 text, whose whole seconds and four-digit years do not hold every date.
template <class... Value>
void decodeAsStored(std::string_view text) {
  (decoded<Value>(text, JsonFormat::store), ...);
}

// A part that is passed on unread is written as the dynamic value is.
void checkPart(std::string_view text) {
  const auto value = decoded<JSONValue>(text);
  if (!value) return;
  const auto passedOn =
      withJson(text, [](const boost::json::value& document) { return encodeJson(JsonPart{&document}); });
  if (passedOn != encodeJson(*value)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  checkPart(text);
  checkRoundTrips<JSONValue, LocalControlRequest, LocalControlResponse>(text);
  checkRoundTrips<BridgeStatus, ClientIdentity, ClientIdentitySummary, MCPRequestRecord,
                  PrivacyRetentionSettings, SessionReference, StructuredError, TerminalOutput,
                  TerminalScreenCapture, TerminalSession, TerminalTabSnapshot>(text);
  checkRoundTrips<EmptyInput, SessionTargetInput, ListSessionsInput, CreateSessionInput, SendCommandInput,
                  SendKeyInput, ReadOutputInput>(text);
  checkRoundTrips<StatusPayload, SessionsPayload, SessionPayload, CommandPayload, KeyPayload, OutputPayload,
                  CapturePayload, FocusPayload, ToolResult<OutputPayload>>(text);
  decodeAsStored<MCPRequestRecord, PrivacyRetentionSettings>(text);
  return 0;
}
