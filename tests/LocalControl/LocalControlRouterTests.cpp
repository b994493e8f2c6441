#include <map>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/LocalControlRouter.h"
#include "tests/support/CoreFixture.h"
#include "tests/support/Golden.h"

namespace velmora {
namespace {

using testing::numberedUuid;

class LocalControlRouterTest : public testing::CoreFixture {
 protected:
  static LocalControlRequest request(ToolName tool, JSONObject arguments, std::int64_t version = 1) {
    return {.protocolVersion = version,
            .requestId = numberedUuid(500),
            .client = {"some client", "1.0", 42},
            .operation = tool,
            .arguments = std::move(arguments)};
  }
  LocalControlResponse route(ToolName tool, JSONObject arguments, std::int64_t version = 1) {
    return router.route(request(tool, std::move(arguments), version));
  }

  RequestRecorder recorder{time.clock()};
  HistoryStore historyStore{files, directory.path() / "Velmora" / "history.json"};
  BridgeCoordinator coordinator{terminal,      registry,     state,       recorder,
                                settingsStore, historyStore, time.clock()};
  LocalControlRouter router{coordinator};
};

TEST_F(LocalControlRouterTest, RefusesEveryOtherVersionWithoutTheCoordinator) {
  for (const std::int64_t version : {0, 2, -1}) {
    EXPECT_EQ(
        route(ToolName::readOutput, {}, version),
        (LocalControlResponse{
            .requestId = numberedUuid(500),
            .ok = false,
            .error = StructuredError{.code = ErrorCode::invalidArgument,
                                     .message = "Unsupported local control protocol version.",
                                     .operation = "terminal_read_output",
                                     .retryable = false,
                                     .recoverySuggestion = "Correct the request arguments and try again."}}));
  }
  EXPECT_TRUE(recorder.snapshot().empty());
}

TEST_F(LocalControlRouterTest, KnowsTheExtendedFormOnlyWhenItIsAskedForIt) {
  const auto id = registerTab().toString();
  const JSONObject typing{{"sessionId", id}, {"command", "y"}, {"submit", false}};
  const JSONObject pressing{{"sessionId", id}, {"key", "controlC"}};
  const auto plain = route(ToolName::sendCommand, typing);
  EXPECT_EQ(terminal.calls().back(), "send(y, /dev/ttys001, 11)");
  EXPECT_EQ(plain.extended, std::nullopt);
  EXPECT_EQ(encodeJson(*plain.data).find("\"session\""), std::string::npos);
  EXPECT_EQ(route(ToolName::sendKey, pressing).error->code, ErrorCode::invalidArgument);

  auto asked = request(ToolName::sendCommand, typing);
  asked.extended = true;
  const auto extended = router.route(asked);
  EXPECT_EQ(terminal.callCount("typeUnsubmitted"), 1u);
  EXPECT_EQ(extended.extended, true);
  EXPECT_NE(encodeJson(*extended.data).find("\"session\""), std::string::npos);
  asked = request(ToolName::sendKey, pressing);
  asked.extended = true;
  EXPECT_TRUE(router.route(asked).ok);
}

TEST_F(LocalControlRouterTest, TellsOfProgressOnlyWhoAsksForItInTheExtendedForm) {
  registerTab();
  auto reading = request(ToolName::readOutput, {{"sessionId", sessions.list({})[0].sessionId.toString()}});
  for (const auto& [extended, progress] : {std::pair(true, true), {true, false}, {false, true}}) {
    reading.extended = extended;
    reading.progress = progress;
    std::vector<std::string> messages;
    router.answer(encodeJson(reading),
                  {.send = [&](const std::string& message) { messages.push_back(message); }});
    const auto hears = terminal.callers().back().hearLastLine;
    EXPECT_EQ(hears != nullptr, extended && progress);
    if (!hears) continue;
    hears("step 3");
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(decodeJson<LocalControlProgress>(messages[0]),
              (LocalControlProgress{.requestId = reading.requestId, .lastLine = "step 3"}));
  }
}

TEST_F(LocalControlRouterTest, SaysThatAnAnswerIsTooLargeInsteadOfLeavingItToTheFrame) {
  const auto id = registerTab().toString();
  for (int family = 0; family < 50'000; ++family) terminal.output.text += "👩‍👩‍👧‍👦";
  const auto response = route(ToolName::readOutput, {{"sessionId", id}, {"maxCharacters", 50'000}});
  EXPECT_EQ(response.requestId, numberedUuid(500));
  EXPECT_FALSE(response.ok);
  ASSERT_TRUE(response.error);
  EXPECT_EQ(response.error->code, ErrorCode::internalError);
  EXPECT_EQ(response.error->operation, "terminal_read_output");
  EXPECT_NE(response.error->message.find("; 1048576 fit into one message."), std::string::npos)
      << response.error->message;
  EXPECT_FALSE(response.error->retryable);
  EXPECT_TRUE(route(ToolName::readOutput, {{"sessionId", id}, {"maxCharacters", 30'000}}).ok);
}

TEST_F(LocalControlRouterTest, TellsTheTerminalOnWhoseBehalfItIsAsked) {
  const auto id = registerTab().toString();
  const auto earlier = terminal.callers().size();
  const Caller caller{.since = Caller().since - std::chrono::hours(1), .hasLeft = [] { return true; }};
  const std::map<ToolName, JSONObject> calls{{ToolName::listSessions, {}},
                                             {ToolName::getActiveSession, {}},
                                             {ToolName::createSession, {}},
                                             {ToolName::sendCommand, {{"sessionId", id}, {"command", "ls"}}},
                                             {ToolName::sendKey, {{"sessionId", id}, {"key", "tab"}}},
                                             {ToolName::readOutput, {{"sessionId", id}}},
                                             {ToolName::captureScreen, {{"sessionId", id}}},
                                             {ToolName::focusSession, {{"sessionId", id}}}};
  for (const auto& [tool, arguments] : calls) router.answer(encodeJson(request(tool, arguments)), caller);
  const auto callers = terminal.callers();
  // Five of them look before they act.
  ASSERT_EQ(callers.size(), earlier + calls.size() + 5);
  for (auto given = earlier; given < callers.size(); ++given) {
    EXPECT_EQ(callers[given].since, caller.since);
    EXPECT_TRUE(callers[given].hasLeft());
  }
}

TEST_F(LocalControlRouterTest, IgnoresTheArgumentsOfToolsThatTakeNone) {
  registerTab();
  EXPECT_TRUE(route(ToolName::status, {{"x", 1}}).ok);
  EXPECT_TRUE(route(ToolName::getActiveSession, {{"sessionId", 7}}).ok);
}

TEST_F(LocalControlRouterTest, UndecodableArgumentsNeverReachTheCoordinator) {
  const JSONObject target{{"sessionId", numberedUuid(1).toString()}};
  const std::vector<std::pair<ToolName, JSONObject>> cases = {
      {ToolName::sendKey, {{"key", "tab"}}},
      {ToolName::sendKey, {{"sessionId", numberedUuid(1).toString()}, {"key", "Tab"}}},
      {ToolName::sendCommand, {{"sessionId", "no uuid"}, {"command", "ls"}}},
      {ToolName::sendCommand, {{"sessionId", numberedUuid(1).toString()}, {"command", 7}}},
      {ToolName::readOutput, {{"sessionId", numberedUuid(1).toString()}, {"maxCharacters", 1.5}}},
      {ToolName::listSessions, {{"includeBusy", "yes"}}},
      {ToolName::createSession, {{"kind", "Window"}}},
      {ToolName::captureScreen, {}},
      {ToolName::focusSession, {}},
  };
  for (const auto& [tool, arguments] : cases) {
    const auto response = route(tool, arguments);
    EXPECT_FALSE(response.ok);
    ASSERT_TRUE(response.error);
    EXPECT_EQ(response.error->message, "Tool arguments could not be decoded using the advertised schema.");
    EXPECT_EQ(response.error->operation, wireName(tool));
    EXPECT_EQ(response.error->session, std::nullopt);
  }
  EXPECT_TRUE(recorder.snapshot().empty());
}

TEST_F(LocalControlRouterTest, PassesTheClientOnWithoutItsProcess) {
  route(ToolName::listSessions, {});
  EXPECT_EQ(recorder.snapshot()[0].client, (ClientIdentitySummary{"some client", "1.0"}));
}

TEST_F(LocalControlRouterTest, CarriesThePayloadAsAnObject) {
  const auto id = registerTab();
  const auto response = route(ToolName::readOutput, {{"sessionId", id.toString()}});
  ASSERT_TRUE(response.data && response.data->object());
  std::vector<std::string> keys;
  for (const auto& [key, value] : *response.data->object()) keys.push_back(key);
  EXPECT_EQ(keys,
            (std::vector<std::string>{"returnedCharacters", "sessionId", "source", "text", "truncated"}));
}

TEST_F(LocalControlRouterTest, EveryToolsResponseIsPinned) {
  const auto id = registerTab().toString();
  const auto pin = [&](ToolName tool, JSONObject arguments) {
    const auto response = router.answer(encodeJson(request(tool, std::move(arguments))));
    EXPECT_TRUE(decodeJson<LocalControlResponse>(response).ok) << wireName(tool);
    testing::expectGolden("responses/" + std::string(wireName(tool)) + ".json", response);
    EXPECT_EQ(encodeJson(decodeJson<LocalControlResponse>(response)), response);
  };
  time.advance(0.25);
  pin(ToolName::status, {});
  pin(ToolName::listSessions, {});
  pin(ToolName::getActiveSession, {});
  pin(ToolName::createSession, {});
  pin(ToolName::sendCommand, {{"sessionId", id}, {"command", "ls"}});
  pin(ToolName::sendKey, {{"sessionId", id}, {"key", "return"}, {"repeatCount", 2}});
  pin(ToolName::readOutput, {{"sessionId", id}, {"maxCharacters", 3}});
  pin(ToolName::captureScreen, {{"sessionId", id}});
  pin(ToolName::focusSession, {{"sessionId", id}});
}

TEST_F(LocalControlRouterTest, AnswersTextWithTheTextOfTheSameResponse) {
  const auto id = registerTab();
  const auto read = request(ToolName::readOutput, {{"sessionId", id.toString()}, {"unknown", 1.0}});
  EXPECT_EQ(router.answer(encodeJson(read)), encodeJson(router.route(read)));
  EXPECT_EQ(recorder.snapshot().size(), 2u);
}

TEST_F(LocalControlRouterTest, TextThatIsNoRequestIsNotAnswered) {
  for (const auto* payload :
       {"{", "{}",
        R"({"protocolVersion":1,"requestId":"0F8FAD5B-D9CB-469F-A165-70867728950E",)"
        R"("client":{"name":"a","processId":1},"operation":"terminal_status","arguments":[]})"}) {
    EXPECT_THROW(router.answer(payload), JsonDecodeError) << payload;
  }
  EXPECT_TRUE(recorder.snapshot().empty());
}

TEST_F(LocalControlRouterTest, AFailureCarriesItsErrorAndNoData) {
  const auto response = route(ToolName::focusSession, {{"sessionId", numberedUuid(99).toString()}});
  EXPECT_FALSE(response.ok);
  EXPECT_FALSE(response.data);
  EXPECT_EQ(response.error->code, ErrorCode::sessionNotFound);
  testing::expectGolden("responses/failure.json", encodeJson(response));
}

TEST_F(LocalControlRouterTest, ValuesOutOfRangeAreRefusedFurtherIn) {
  const auto response =
      route(ToolName::readOutput, {{"sessionId", numberedUuid(99).toString()}, {"maxCharacters", 0}});
  EXPECT_EQ(response.error->message, "maxCharacters must be between 1 and 50000.");
  EXPECT_EQ(recorder.snapshot().size(), 1u);
}

}  // namespace
}  // namespace velmora
