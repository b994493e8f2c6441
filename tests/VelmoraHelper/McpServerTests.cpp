#include <gtest/gtest.h>

#include <cerrno>
#include <sstream>

#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/UnixSocketError.h"
#include "VelmoraHelper/McpServer.h"
#include "tests/support/Golden.h"

namespace velmora {
namespace {

const Uuid id = *Uuid::parse("11111111-2222-4333-8444-555555555555");

// An application that succeeds in what it can answer from here, refuses a command and is gone for a key.
LocalControlResponse fakeApplication(const LocalControlRequest& request) {
  LocalControlResponse response{.requestId = request.requestId, .ok = true};
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
    case ToolName::sendKey:
      throw UnixSocketError::system("connect", ENOENT);
    case ToolName::captureScreen:
      throw std::runtime_error("broken");
    default:
      // What the application was sent, for the transcript.
      response.data = JSONObject{{"client", request.client.name},
                                 {"version", request.client.version.value_or("none")},
                                 {"processId", request.client.processId},
                                 {"arguments", request.arguments}};
  }
  return response;
}

McpServer makeServer() {
  return McpServer({.version = "1.2.3", .clientProcessId = 42},
                   ToolCaller(fakeApplication, [] { return id; }));
}

// Plays the lines that begin with "> " in tests/data/mcp/`name` and expects the answers that follow each.
void expectTranscript(const std::string& name) {
  auto server = makeServer();
  std::istringstream file(testing::readDataFile("mcp/" + name));
  std::string transcript;
  std::size_t requests = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("< ")) continue;
    transcript += line + "\n";
    if (!line.starts_with("> ")) continue;
    ++requests;
    if (const auto answer = server.answer(line.substr(2))) transcript += "< " + *answer + "\n";
  }
  EXPECT_GT(requests, 0u);
  transcript.pop_back();
  testing::expectGolden("mcp/" + name, transcript);
}

TEST(McpServer, InitializesWithEitherRevisionAndOffersItsLatestForOthers) {
  expectTranscript("initialize.txt");
}

TEST(McpServer, ListsTheTools) { expectTranscript("tools-list.txt"); }

TEST(McpServer, CallsTools) { expectTranscript("tools-call.txt"); }

TEST(McpServer, AnswersNonsenseWithErrors) { expectTranscript("errors.txt"); }

TEST(McpServer, GivesTheAnswerAsStructuredContentAndTheSameAsText) {
  auto server = makeServer();
  const auto answer = server.answer(
      R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"terminal_read_output","arguments":{}}})");
  const auto result = parseJson(*answer).at("result");
  EXPECT_EQ(answer->find('\n'), std::string::npos);
  EXPECT_EQ(result.at("isError"), false);
  EXPECT_EQ(result.at("content").as_array().size(), 1u);
  EXPECT_EQ(parseJson(std::string(result.at("content").at(0).at("text").as_string())),
            result.at("structuredContent"));
  EXPECT_EQ(result.at("structuredContent").at("requestId"), id.toString().c_str());
  EXPECT_EQ(result.at("structuredContent").at("data").at("text"),
            "$ echo \"\xED\x95\x9C\"\n\t\xED\x95\x9C\x1B[0m\r\n");
}

TEST(McpServer, NeverCallsTheApplicationForANotificationOrAMalformedCall) {
  int calls = 0;
  McpServer server({.version = "1", .clientProcessId = 1}, ToolCaller(
                                                               [&](const LocalControlRequest& request) {
                                                                 ++calls;
                                                                 return fakeApplication(request);
                                                               },
                                                               [] { return id; }));
  EXPECT_EQ(server.answer(R"({"jsonrpc":"2.0","method":"tools/call","params":{"name":"terminal_status"}})"),
            std::nullopt);
  for (const std::string params :
       {R"({})", R"({"name":1})", R"({"name":"status"})", R"({"name":"terminal_Status"})",
        R"({"name":"terminal_status","arguments":[]})", R"({"name":"terminal_status","arguments":"{}"})"}) {
    const auto answer =
        server.answer(R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":)" + params + "}");
    EXPECT_EQ(parseJson(*answer).at("error").at("code"), -32602) << params;
  }
  EXPECT_EQ(calls, 0);
}

TEST(McpServer, AnswersToNothingThatIsNoRequest) {
  auto server = makeServer();
  for (const auto* line :
       {R"({"jsonrpc":"2.0","method":"notifications/initialized"})",
        R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":1}})",
        R"({"jsonrpc":"2.0","method":"no/such"})", R"({"jsonrpc":"2.0","id":1,"result":{}})",
        R"({"jsonrpc":"2.0","id":1,"error":{"code":-1,"message":"m"}})"}) {
    EXPECT_EQ(server.answer(line), std::nullopt) << line;
  }
}

TEST(McpServer, SaysThatALineWasTooLong) {
  EXPECT_EQ(McpServer::answerToTooLongLine(),
            R"({"jsonrpc":"2.0","id":null,"error":{"code":-32600,"message":"The message is too long."}})");
}

}  // namespace
}  // namespace velmora
