#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/LocalControlMessages.h"
#include "VelmoraHelper/Tools/ToolResultJson.h"
#include "VelmoraHelper/Tools/ToolSchemas.h"
#include "tests/VelmoraHelper/Tools/SchemaCheck.h"

namespace velmora {
namespace {

template <class Payload>
boost::json::object schema() {
  JsonWriter writer(JsonFormat::wire);
  writeOutputSchema<Payload>(writer);
  return parseJson(writer.take()).as_object();
}

// What a client gets as structured content when the application answers with `payload`.
template <class Payload>
boost::json::value contentOf(const Payload& payload) {
  LocalControlResponse response{.requestId = Uuid::random(), .ok = true};
  response.data = decodeJson<JSONValue>(encodeJson(payload));
  const auto members = toolResultMembers(std::move(response), ProtocolRevision::november2025, 0);
  return parseJson("{" + members + "}").at("structuredContent");
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

// Dates are told by their names in the answers; no other member may end so.
template <class Record, template <class...> class List, class... Member>
void expectDatesEndInAt(List<Member...>) {
  const auto check = []<class One>(One) {
    using Value = ValueOf<detail::FieldOf<Record, One>>;
    EXPECT_EQ(std::string_view(One::name).ends_with("At"), (std::is_same_v<Value, Date>)) << One::name;
  };
  (check(Member{}), ...);
}

TEST(OutputSchema, TheNameOfEveryDateEndsInAtAndNoOther) {
  expectDatesEndInAt<BridgeStatus>(MembersOf<BridgeStatus>{});
  expectDatesEndInAt<ClientIdentity>(MembersOf<ClientIdentity>{});
  expectDatesEndInAt<StructuredError>(MembersOf<StructuredError>{});
  expectDatesEndInAt<TerminalSession>(MembersOf<TerminalSession>{});
  expectDatesEndInAt<CommandPayload>(MembersOf<CommandPayload>{});
  expectDatesEndInAt<KeyPayload>(MembersOf<KeyPayload>{});
  expectDatesEndInAt<OutputPayload>(MembersOf<OutputPayload>{});
  expectDatesEndInAt<CapturePayload>(MembersOf<CapturePayload>{});
  expectDatesEndInAt<FocusPayload>(MembersOf<FocusPayload>{});
}

}  // namespace
}  // namespace velmora
