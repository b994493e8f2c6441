#include <gtest/gtest.h>

#include "BridgeModels/Tools.h"
#include "VelmoraHelper/Tools/ToolResultJson.h"
#include "VelmoraHelper/Tools/ToolSchemas.h"
#include "tests/VelmoraHelper/BridgeRecords.h"
#include "tests/VelmoraHelper/Tools/SchemaCheck.h"

namespace velmora {
namespace {

template <class Payload>
boost::json::object schema() {
  JsonWriter writer(JsonFormat::wire);
  writeOutputSchema<Payload>(writer);
  return parseJson(writer.take()).as_object();
}

// A tool that answers with such a payload.
template <class Payload>
ToolName toolOf() {
  for (const auto& entry : enumCases<ToolName>) {
    const bool fits = visitTool(
        entry.value, []<class Tool>(const Tool&) { return std::is_same_v<typename Tool::Payload, Payload>; });
    if (fits) return entry.value;
  }
  throw std::logic_error("no tool has this payload");
}

// What a client gets as structured content when the application answers with `payload`.
template <class Payload>
boost::json::value contentOf(const Payload& payload) {
  const auto answer = testing::bridgeAnswer(
      {.requestId = Uuid::random(), .ok = true, .data = decodeJson<JSONValue>(encodeJson(payload))});
  JsonWriter writer(JsonFormat::people);
  writer.beginObject();
  writeToolResult(writer, toolOf<Payload>(), answer, ProtocolRevision::november2025, 0);
  writer.endObject();
  return parseJson(writer.take()).at("structuredContent");
}

boost::json::value failure() {
  const StructuredError error{.code = ErrorCode::sessionBusy,
                              .message = "m",
                              .operation = "o",
                              .session = SessionReference{.sessionId = Uuid::random(), .title = "t"},
                              .recoverySuggestion = "s"};
  const LocalControlResponse response{.requestId = Uuid::random(), .warnings = {error}, .error = error};
  return parseJson(encodeJson(response));
}

template <class Payload>
void expectFits(const Payload& payload) {
  EXPECT_TRUE(testing::schemaAccepts(schema<Payload>(), contentOf(payload))) << encodeJson(payload);
  EXPECT_TRUE(testing::schemaAccepts(schema<Payload>(), failure()));
}

TEST(OutputSchema, FitsThePayloadOfEveryToolAndItsFailures) {
  StatusPayload status;
  expectFits(status);
  status.status.lastRequestId = Uuid::random();
  status.status.lastError = StructuredError{};
  status.status.connectedClients = {ClientIdentity{}};
  expectFits(status);
  expectFits(SessionsPayload{});
  TerminalSession session;
  expectFits(SessionsPayload{{session, session}});
  session.lastRequestAt = Date{1.5};
  expectFits(SessionPayload{session});
  expectFits(CommandPayload(Uuid::random(), Date{800000000.25}));
  expectFits(KeyPayload(Uuid::random(), TerminalKey::return_, 3, Date{}));
  expectFits(OutputPayload{});
  expectFits(CapturePayload(Uuid::random(), "/tmp/a.png", Date{}));
  expectFits(FocusPayload{});
}

TEST(OutputSchema, RefusesWhatNoAnswerLooksLike) {
  const auto good = contentOf(OutputPayload{});
  const auto refused = [&](const auto& change) {
    auto content = good;
    change(content.as_object());
    return !testing::schemaAccepts(schema<OutputPayload>(), content);
  };
  EXPECT_FALSE(refused([](auto&) {}));
  EXPECT_TRUE(refused([](auto& content) { content.erase("ok"); }));
  EXPECT_TRUE(refused([](auto& content) { content["ok"] = "true"; }));
  EXPECT_TRUE(refused([](auto& content) { content["requestId"] = "x"; }));
  EXPECT_TRUE(refused([](auto& content) { content["warnings"] = nullptr; }));
  EXPECT_TRUE(refused([](auto& content) { content["data"].as_object().erase("text"); }));
  EXPECT_TRUE(refused([](auto& content) { content["data"].as_object()["source"] = "screen"; }));
  EXPECT_TRUE(refused([](auto& content) { content["data"].as_object()["returnedCharacters"] = 1.5; }));
  EXPECT_FALSE(refused([](auto& content) { content["data"].as_object()["new"] = 1; }));
}

}  // namespace
}  // namespace velmora
