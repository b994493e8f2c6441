#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "BridgeModels/Json/JsonReader.h"
#include "VelmoraHelper/Mcp/McpServer.h"
#include "tests/VelmoraHelper/FakeApplication.h"
#include "tests/support/Golden.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::FakeApplication;
using ::testing::IsEmpty;

const Uuid bridgeId = *Uuid::parse("11111111-2222-4333-8444-555555555555");

// An application that succeeds in what it can answer from here and refuses a command.
LocalControlResponse answerTo(const LocalControlRequest& request) {
  LocalControlResponse response{.ok = true};
  switch (request.operation) {
    case ToolName::readOutput:
      response.data =
          JSONObject{{"text", "$ echo \"\xED\x95\x9C\"\n\t\xED\x95\x9C\x1B[0m\r\n"}, {"truncated", false}};
      break;
    case ToolName::sendCommand:
      response.ok = false;
      response.error = StructuredError{.code = ErrorCode::sessionBusy,
                                       .message = "Busy.",
                                       .operation = "terminal_send_command",
                                       .retryable = true,
                                       .recoverySuggestion = "Wait."};
      break;
    default:
      // What the application was sent, for the transcript.
      response.data = JSONObject{{"client", request.client.name},
                                 {"version", request.client.version.value_or("none")},
                                 {"processId", request.client.processId},
                                 {"arguments", request.arguments}};
  }
  return response;
}

std::string call(const std::string& requestId, const std::string& meta = "{}",
                 const std::string& tool = "terminal_status") {
  return R"({"jsonrpc":"2.0","id":)" + requestId + R"(,"method":"tools/call","params":{"name":")" + tool +
         R"(","arguments":{"sessionId":"11111111-2222-4333-8444-555555555555"},"_meta":)" + meta + "}}";
}

std::string cancel(const std::string& requestId) {
  return R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":)" + requestId + "}}";
}

const std::string ping = R"({"jsonrpc":"2.0","id":"p","method":"ping"})";
const std::string pong = R"({"jsonrpc":"2.0","id":"p","result":{}})";

class McpServerTest : public ::testing::Test {
 protected:
  void initialize(const std::string& revision = "2025-11-25") {
    receive(R"({"jsonrpc":"2.0","id":0,"method":"initialize","params":{"protocolVersion":")" + revision +
            R"(","capabilities":{},"clientInfo":{"name":"tester","version":"2.0"}}})");
    sent.clear();
  }

  void receive(const std::string& line) {
    server.receive(line, now);
    calls.advance(now);
  }

  // Lets the application answer everything that has arrived.
  void answerAll() {
    for (const auto& received : application.receive()) {
      FakeApplication::answer(received, answerTo(received.request));
    }
    calls.advance(now);
  }

  std::vector<std::string> sentNow() { return std::exchange(sent, {}); }

  // Plays the lines that begin with "> " in tests/data/mcp/`name` and expects the messages that follow each.
  void expectTranscript(const std::string& name) {
    std::istringstream file(testing::readDataFile("mcp/" + name));
    std::string transcript;
    std::size_t requests = 0;
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with("< ")) continue;
      transcript += line + "\n";
      if (line == "# The application ends.") application.isRunning = false, application.close();
      if (!line.starts_with("> ")) continue;
      ++requests;
      receive(line.substr(2));
      answerAll();
      for (const auto& message : sentNow()) transcript += "< " + message + "\n";
    }
    EXPECT_GT(requests, 0u);
    transcript.pop_back();
    testing::expectGolden("mcp/" + name, transcript);
  }

  SteadyTime now{};
  FakeApplication application;
  std::vector<std::string> sent;
  BridgeCalls calls{[this] { return application.connect(); }};
  McpServer server{{.version = "1.2.3", .clientProcessId = 42},
                   calls,
                   [] { return bridgeId; },
                   [this](std::string message) { sent.push_back(std::move(message)); }};
};

TEST_F(McpServerTest, InitializesWithEachRevisionAndOffersItsLatestForOthers) {
  expectTranscript("initialize.txt");
}

TEST_F(McpServerTest, ServesRequestsThatStateTheirRevisionByThemselves) { expectTranscript("stateless.txt"); }

TEST_F(McpServerTest, ListsTheTools) { expectTranscript("tools-list.txt"); }

TEST_F(McpServerTest, CallsTools) { expectTranscript("tools-call.txt"); }

TEST_F(McpServerTest, AnswersNonsenseWithErrors) { expectTranscript("errors.txt"); }

TEST_F(McpServerTest, AnswersABatchWithABatchWhereTheRevisionHasThem) { expectTranscript("batch.txt"); }

TEST_F(McpServerTest, GivesTheAnswerAsStructuredContentAndTheSameAsText) {
  initialize();
  receive(call("1", "{}", "terminal_read_output"));
  answerAll();
  ASSERT_EQ(sent.size(), 1u);
  const auto result = parseJson(sent[0]).at("result");
  EXPECT_EQ(sent[0].find('\n'), std::string::npos);
  EXPECT_EQ(result.at("isError"), false);
  EXPECT_EQ(result.at("content").as_array().size(), 1u);
  EXPECT_EQ(parseJson(std::string(result.at("content").at(0).at("text").as_string())),
            result.at("structuredContent"));
  EXPECT_EQ(result.at("structuredContent").at("requestId"), bridgeId.toString().c_str());
  EXPECT_EQ(result.at("structuredContent").at("data").at("text"),
            "$ echo \"\xED\x95\x9C\"\n\t\xED\x95\x9C\x1B[0m\r\n");
}

TEST_F(McpServerTest, NeverCallsTheApplicationForANotificationOrAMalformedCall) {
  initialize();
  receive(R"({"jsonrpc":"2.0","method":"tools/call","params":{"name":"terminal_status"}})");
  EXPECT_THAT(sentNow(), IsEmpty());
  for (const std::string params :
       {R"({})", R"({"name":1})", R"({"name":"status"})", R"({"name":"terminal_Status"})",
        R"({"name":"terminal_status","arguments":[]})", R"({"name":"terminal_status","arguments":"{}"})"}) {
    receive(R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":)" + params + "}");
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(parseJson(sentNow()[0]).at("error").at("code"), -32602) << params;
  }
  EXPECT_EQ(application.connected, 0);
}

TEST_F(McpServerTest, SaysWhatIsWrongWithArgumentsWithoutAskingTheApplication) {
  initialize();
  receive(R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"terminal_send_key","arguments":)"
          R"({"sessionId":"11111111-2222-4333-8444-555555555555","key":"ctrl-c"}}})");
  ASSERT_EQ(sent.size(), 1u);
  const auto result = parseJson(sentNow()[0]).at("result");
  EXPECT_EQ(result.at("isError"), true);
  const auto& error = result.at("structuredContent").at("error");
  EXPECT_EQ(error.at("code"), "INVALID_ARGUMENT");
  EXPECT_EQ(error.at("operation"), "terminal_send_key");
  EXPECT_EQ(error.at("retryable"), false);
  EXPECT_THAT(std::string(error.at("message").as_string()), ::testing::HasSubstr("for Ctrl-C send the text"));
  EXPECT_EQ(application.connected, 0);
  receive(call("1"));  // the id is free again
  answerAll();
  EXPECT_EQ(sent.size(), 1u);
}

TEST_F(McpServerTest, AnswersToNothingThatIsNoRequest) {
  initialize();
  for (const auto* line :
       {R"({"jsonrpc":"2.0","method":"notifications/initialized"})",
        R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":1}})",
        R"({"jsonrpc":"2.0","method":"notifications/cancelled"})",
        R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":null}})",
        R"({"jsonrpc":"2.0","method":"no/such"})", R"({"jsonrpc":"2.0","id":1,"result":{}})",
        R"({"jsonrpc":"2.0","id":1,"error":{"code":-1,"message":"m"}})"}) {
    receive(line);
    EXPECT_THAT(sentNow(), IsEmpty()) << line;
  }
}

TEST_F(McpServerTest, AnswersOtherRequestsWhileACallIsUnderWay) {
  initialize();
  receive(call("1"));
  receive(ping);
  EXPECT_THAT(sentNow(), ElementsAre(pong));
  answerAll();
  EXPECT_EQ(sent.size(), 1u);
}

TEST_F(McpServerTest, AnswersEachCallWithItsOwnIdInTheOrderInWhichTheyEnd) {
  initialize();
  receive(call("\"slow\"", "{}", "terminal_read_output"));
  receive(call("7.0"));
  auto received = application.receive();
  ASSERT_EQ(received.size(), 2u);
  FakeApplication::answer(received[1], {.ok = true});
  calls.advance(now);
  FakeApplication::answer(received[0], {.ok = true});
  calls.advance(now);
  ASSERT_EQ(sent.size(), 2u);
  EXPECT_TRUE(sent[0].starts_with(R"({"jsonrpc":"2.0","id":7.0,)")) << sent[0];
  EXPECT_TRUE(sent[1].starts_with(R"({"jsonrpc":"2.0","id":"slow",)")) << sent[1];
}

TEST_F(McpServerTest, RefusesAnIdThatIsStillInUse) {
  initialize();
  receive(call("1"));
  receive(call("1"));
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_EQ(parseJson(sentNow()[0]).at("error").at("code"), -32600);
  answerAll();
  EXPECT_EQ(sentNow().size(), 1u);
  receive(call("1"));
  answerAll();
  EXPECT_NE(sentNow().at(0).find("result"), std::string::npos);
}

TEST_F(McpServerTest, SendsNothingMoreForACancelledCall) {
  initialize();
  receive(call("\"a\"", R"({"progressToken":1})"));
  receive(call("2"));
  receive(cancel(R"("\u0061")"));
  now += 5s;
  server.sendProgress(now);
  EXPECT_THAT(sentNow(), IsEmpty());
  answerAll();
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_TRUE(sent[0].starts_with(R"({"jsonrpc":"2.0","id":2,)"));
  receive(cancel("2"));  // answered already
  receive(cancel("99"));
  EXPECT_EQ(sent.size(), 1u);
  EXPECT_EQ(server.nextProgress(), std::nullopt);
}

TEST_F(McpServerTest, TellsOfProgressOnceASecondAndOnlyWhenItIsAskedFor) {
  initialize();
  receive(call("1", R"({"progressToken":"t\n"})"));
  receive(call("2"));
  EXPECT_EQ(server.nextProgress(), now + 1s);
  now += 999ms;
  server.sendProgress(now);
  EXPECT_THAT(sentNow(), IsEmpty());
  now += 1ms;
  server.sendProgress(now);
  server.sendProgress(now);
  EXPECT_THAT(
      sentNow(),
      ElementsAre(
          R"({"jsonrpc":"2.0","method":"notifications/progress","params":{"progressToken":"t\n","progress":1,)"
          R"("message":"Waiting for Velmora to answer terminal_status"}})"));
  now += 3500ms;
  server.sendProgress(now);
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_NE(sentNow()[0].find("\"progress\":4,"), std::string::npos);
  EXPECT_EQ(server.nextProgress(), now + 500ms);
  answerAll();
  sent.clear();
  now += 60s;
  server.sendProgress(now);
  EXPECT_THAT(sentNow(), IsEmpty());
}

TEST_F(McpServerTest, ServesBothErasInOneProcess) {
  const std::string meta = R"({"io.modelcontextprotocol/protocolVersion":"2026-07-28",)"
                           R"("io.modelcontextprotocol/clientCapabilities":{},)"
                           R"("io.modelcontextprotocol/clientInfo":{"name":"modern","version":"3"}})";
  initialize("2025-06-18");
  receive(call("1", meta));
  receive(call("2"));
  answerAll();
  ASSERT_EQ(sent.size(), 2u);
  const auto modern = parseJson(sent[0]).at("result");
  EXPECT_EQ(modern.at("resultType"), "complete");
  EXPECT_EQ(modern.at("structuredContent").at("data").at("client"), "modern");
  EXPECT_EQ(modern.at("_meta").at("io.modelcontextprotocol/serverInfo").at("name"), "velmora");
  const auto legacy = parseJson(sent[1]).at("result").as_object();
  EXPECT_FALSE(legacy.contains("resultType"));
  EXPECT_EQ(legacy.at("structuredContent").at("data").at("client"), "tester");
}

TEST_F(McpServerTest, ANewHandshakeTakesThePlaceOfTheOneBefore) {
  initialize("2025-03-26");
  receive("[" + ping + "]");
  EXPECT_THAT(sentNow(), ElementsAre("[" + pong + "]"));
  initialize("2025-11-25");
  receive("[" + ping + "]");
  EXPECT_NE(sentNow().at(0).find("-32600"), std::string::npos);
}

TEST_F(McpServerTest, AnswersABatchWhenItsLastCallHasEnded) {
  initialize("2025-03-26");
  receive("[" + call("1") + "," + ping + "," + call("2") + "," + cancel("9") + "]");
  EXPECT_THAT(sentNow(), IsEmpty());
  receive(cancel("2"));
  EXPECT_THAT(sentNow(), IsEmpty());
  answerAll();
  ASSERT_EQ(sent.size(), 1u);
  const auto answers = parseJson(sent[0]).as_array();
  ASSERT_EQ(answers.size(), 2u);
  EXPECT_EQ(answers[0].at("id"), "p");
  EXPECT_EQ(answers[1].at("id"), 1);
}

TEST_F(McpServerTest, SendsNothingForABatchOfNotifications) {
  initialize("2025-03-26");
  receive("[" + cancel("1") + "," + cancel("2") + "]");
  EXPECT_THAT(sentNow(), IsEmpty());
}

TEST_F(McpServerTest, SaysThatALineWasTooLong) {
  server.receiveTooLongLine("[1,", "]");
  server.receiveTooLongLine(R"({"id":"a","params":{"x)", R"(x"}})");
  EXPECT_THAT(
      sentNow(),
      ElementsAre(
          R"({"jsonrpc":"2.0","error":{"code":-32600,"message":"The message is too long."}})",
          R"({"jsonrpc":"2.0","id":"a","error":{"code":-32600,"message":"The message is too long."}})"));
}

}  // namespace
}  // namespace velmora
