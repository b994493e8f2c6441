// The program `velmora` from end to end: a real child process, and a real control socket with a made-up
// application behind it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <future>
#include <optional>

#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/LocalControlServer.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "tests/VelmoraHelper/HelperProcess.h"
#include "tests/support/RecordHandler.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::HelperProcess;

const std::string initialize =
    R"({"jsonrpc":"2.0","id":0,"method":"initialize","params":{"protocolVersion":"2025-11-25",)"
    R"("capabilities":{},"clientInfo":{"name":"tester","version":"2.0"}}})";

std::string call(const std::string& tool, const std::string& arguments = "{}") {
  return R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":")" + tool + R"(","arguments":)" +
         arguments + R"(,"_meta":{"io.modelcontextprotocol/protocolVersion":"2026-07-28",)" +
         R"("io.modelcontextprotocol/clientCapabilities":{}}}})";
}

const std::string session = "11111111-2222-4333-8444-555555555555";
const std::string inSession = R"({"sessionId":")" + session + "\"";

boost::json::value resultOf(const std::string& answer) { return parseJson(answer).at("result"); }

std::filesystem::path socketIn(const TemporaryDirectory& directory) {
  return directory / UnixSocketEndpoint::directoryName / UnixSocketEndpoint::fileName;
}

// An application that answers every request with `handler` until it is destroyed.
class Application {
 public:
  template <class Answer>
  Application(const TemporaryDirectory& directory, Answer answer)
      : server_(testing::recordHandler(std::move(answer)), socketIn(directory)) {
    server_.start();
  }

 private:
  LocalControlServer server_;
};

LocalControlResponse succeed(const LocalControlRequest& request) {
  return {.requestId = request.requestId, .ok = true, .data = JSONObject{{"echo", request.arguments}}};
}

LocalControlResponse breakOff(const LocalControlRequest&) {
  throw std::runtime_error("the connection ends here");
}

void expectUnavailable(const std::string& answer, const std::string& message, bool retryable = true) {
  const auto result = resultOf(answer);
  const auto& content = result.at("structuredContent");
  EXPECT_EQ(result.at("isError"), true);
  EXPECT_EQ(content.at("ok"), false);
  EXPECT_EQ(content.at("error").at("code"), "BRIDGE_UNAVAILABLE");
  EXPECT_EQ(content.at("error").at("message"), message.c_str());
  EXPECT_EQ(content.at("error").at("retryable"), retryable);
}

TEST(VelmoraProgram, CarriesACallToTheApplicationAndItsAnswerBack) {
  const TemporaryDirectory directory;
  std::promise<LocalControlRequest> received;
  const Application application(directory, [&](const LocalControlRequest& request) {
    received.set_value(request);
    return succeed(request);
  });
  HelperProcess helper(directory.path());
  EXPECT_EQ(resultOf(helper.ask(initialize)).at("serverInfo").at("name"), "velmora");
  helper.write(R"({"jsonrpc":"2.0","method":"notifications/initialized"})"
               "\n");
  const auto result = resultOf(helper.ask(
      R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"terminal_send_command",)"
      R"("arguments":{"sessionId":"11111111-2222-4333-8444-555555555555","command":"ls\n\ud55c","n":1.5}}})"));

  const auto request = received.get_future().get();
  EXPECT_EQ(request.protocolVersion, 1);
  EXPECT_EQ(request.operation, ToolName::sendCommand);
  EXPECT_EQ(request.arguments,
            (JSONObject{{"command", "ls\n\xED\x95\x9C"}, {"n", 1.5}, {"sessionId", session}}));
  EXPECT_EQ(request.client, (LocalClientInput{.name = "tester", .version = "2.0", .processId = ::getpid()}));
  EXPECT_EQ(result.at("isError"), false);
  EXPECT_EQ(result.at("structuredContent").at("requestId"), request.requestId.toString().c_str());
  EXPECT_EQ(result.at("structuredContent").at("data").at("echo").at("command"), "ls\n\xED\x95\x9C");
}

TEST(VelmoraProgram, GivesEachCallAnIdOfItsOwn) {
  const TemporaryDirectory directory;
  const Application application(directory, succeed);
  HelperProcess helper(directory.path());
  const auto first = resultOf(helper.ask(call("terminal_status")));
  const auto second = resultOf(helper.ask(call("terminal_status")));
  EXPECT_NE(first.at("structuredContent").at("requestId"), second.at("structuredContent").at("requestId"));
}

TEST(VelmoraProgram, AnswersWithoutTheApplicationAndSaysSoOnlyWhenAToolIsCalled) {
  const TemporaryDirectory directory;
  HelperProcess helper(directory.path());
  EXPECT_EQ(resultOf(helper.ask(initialize)).at("protocolVersion"), "2025-11-25");
  EXPECT_EQ(
      resultOf(helper.ask(R"({"jsonrpc":"2.0","id":2,"method":"tools/list"})")).at("tools").as_array().size(),
      9u);
  expectUnavailable(helper.ask(call("terminal_status")), "Velmora is not running.");
}

TEST(VelmoraProgram, FindsAnApplicationThatStartsOrRestartsLater) {
  const TemporaryDirectory directory;
  HelperProcess helper(directory.path());
  std::optional<Application> application;
  for (int round = 0; round < 3; ++round) {
    expectUnavailable(helper.ask(call("terminal_status")), "Velmora is not running.");
    application.emplace(directory, succeed);
    EXPECT_EQ(resultOf(helper.ask(call("terminal_status"))).at("isError"), false);
    application.reset();
  }
}

TEST(VelmoraProgram, SaysThatTheOutcomeIsUnknownWhenTheApplicationBreaksOff) {
  const TemporaryDirectory directory;
  const Application application(directory, breakOff);
  HelperProcess helper(directory.path());
  expectUnavailable(
      helper.ask(call("terminal_send_command", inSession + R"(,"command":"ls"})")),
      "Velmora closed the connection before it answered, so it is unknown whether the call took effect.",
      /*retryable=*/false);
  expectUnavailable(helper.ask(call("terminal_read_output", inSession + "}")),
                    "Velmora closed the connection before it answered.");
}

TEST(VelmoraProgram, RefusesArgumentsThatFitNoRequest) {
  const TemporaryDirectory directory;
  const Application application(directory, succeed);
  HelperProcess helper(directory.path());
  const auto result = resultOf(helper.ask(
      call("terminal_send_command", inSession + R"(,"command":")" + std::string(1100000, 'x') + R"("})")));
  EXPECT_EQ(result.at("structuredContent").at("error").at("code"), "INVALID_ARGUMENT");
  EXPECT_EQ(resultOf(helper.ask(call("terminal_status"))).at("isError"), false);
}

TEST(VelmoraProgram, NeverUsesASocketPathThatDoesNotFit) {
  const TemporaryDirectory directory;
  const auto deep = directory / std::string(100, 'd');
  std::filesystem::create_directory(deep);
  HelperProcess helper(deep);
  expectUnavailable(
      helper.ask(call("terminal_status")),
      "Velmora's control socket is not safe to use: its path is too long or not the user's own.");
}

TEST(VelmoraProgram, EndsWithZeroWhenItsInputEndsAndPrintsNothingElse) {
  const TemporaryDirectory directory;
  HelperProcess helper(directory.path());
  helper.ask(initialize);
  helper.closeInput();
  EXPECT_EQ(helper.restOfOutput(), "");
  EXPECT_EQ(helper.restOfErrors(), "");
  EXPECT_EQ(helper.wait(), 0);
}

TEST(VelmoraProgram, EndsWithAFailureAndNoSignalWhenNobodyReadsItsOutput) {
  const TemporaryDirectory directory;
  HelperProcess helper(directory.path());
  helper.closeOutput();
  helper.write(initialize + "\n");
  EXPECT_EQ(helper.wait(), 1);
  EXPECT_EQ(helper.restOfErrors(), "velmora: write: Broken pipe\n");
}

TEST(VelmoraProgram, RunsCallsSideBySide) {
  const TemporaryDirectory directory;
  std::promise<void> statusAsked;
  const Application application(directory, [&](const LocalControlRequest& request) {
    if (request.operation == ToolName::status) statusAsked.set_value();
    if (request.operation == ToolName::readOutput) statusAsked.get_future().wait();
    return succeed(request);
  });
  HelperProcess helper(directory.path());
  helper.write(call("terminal_read_output", inSession + "}") + "\n");
  auto status = call("terminal_status");
  status.replace(status.find("\"id\":1"), 6, "\"id\":2");
  helper.write(status + "\n");
  std::vector<std::int64_t> answered;
  for (int answer = 0; answer < 2; ++answer)
    answered.push_back(parseJson(*helper.readLine()).at("id").as_int64());
  EXPECT_THAT(answered, ::testing::UnorderedElementsAre(1, 2));
}

TEST(VelmoraProgram, ShowsACapturedPictureUpToTheLimit) {
  const TemporaryDirectory directory;
  const auto path = directory / "picture.png";
  std::ofstream(path, std::ios::binary) << "\x89PNG\r\n\x1A\n";
  const Application application(directory, [&](const LocalControlRequest& request) {
    return LocalControlResponse{
        .requestId = request.requestId, .ok = true, .data = JSONObject{{"imagePath", path.string()}}};
  });
  const auto blocksWithLimit = [&](const std::string& limit) {
    HelperProcess helper(directory.path(), {}, {{"VELMORA_INLINE_IMAGE_BYTES", limit}});
    const auto blocks = resultOf(helper.ask(call("terminal_capture_screen", inSession + "}")))
                            .at("content")
                            .as_array()
                            .size();
    helper.closeInput();
    return std::make_pair(blocks, helper.restOfErrors());
  };
  EXPECT_EQ(blocksWithLimit("8"), std::make_pair(std::size_t{3}, std::string()));
  EXPECT_EQ(blocksWithLimit("0"), std::make_pair(std::size_t{2}, std::string()));
  EXPECT_EQ(blocksWithLimit("many").first, 3u);
  EXPECT_THAT(blocksWithLimit("1k").second,
              ::testing::HasSubstr("VELMORA_INLINE_IMAGE_BYTES must be a number"));
}

TEST(VelmoraProgram, LogsMethodsAndOutcomesButNoContentsWhenItIsAskedTo) {
  const TemporaryDirectory directory;
  HelperProcess helper(directory.path(), {}, {{"VELMORA_LOG", "1"}});
  helper.ask(call("terminal_send_command", inSession + R"(,"command":"secret"})"));
  helper.closeInput();
  EXPECT_EQ(helper.restOfErrors(),
            "velmora: received \"tools/call\"\nvelmora: terminal_send_command failed\n");
}

TEST(VelmoraProgram, NeverTakesTheApplicationForAClosedStandardStream) {
  const TemporaryDirectory directory;
  const Application application(directory, succeed);
  auto helper = HelperProcess::fromShell(directory.path(), "exec \"$0\" 2>&-", {{"VELMORA_LOG", "1"}});
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(resultOf(helper.ask(call("terminal_status"))).at("isError"), false);
  }
}

TEST(VelmoraProgram, PrintsNothingIntoTheApplicationOfACommandWithAClosedStandardStream) {
  const TemporaryDirectory directory;
  std::atomic<int> calls = 0;
  const Application application(directory, [&](const LocalControlRequest& request) {
    ++calls;
    return succeed(request);
  });
  auto helper = HelperProcess::fromShell(directory.path(), "exec \"$0\" call terminal_status >&-");
  EXPECT_EQ(helper.wait(), 0);
  EXPECT_EQ(calls, 1);
}

TEST(VelmoraProgram, EndsOnSigtermThoughTheClientIgnoresIt) {
  const TemporaryDirectory directory;
  auto helper = HelperProcess::fromShell(directory.path(), "trap '' TERM; exec \"$0\"");
  helper.ask(initialize);
  helper.signal(SIGTERM);
  EXPECT_EQ(helper.wait(), 128 + SIGTERM);
}

TEST(VelmoraProgram, PrintsItsVersionAndItsUse) {
  const TemporaryDirectory directory;
  HelperProcess version(directory.path(), {"--version"});
  EXPECT_THAT(version.restOfOutput(), ::testing::MatchesRegex("velmora [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  EXPECT_EQ(version.wait(), 0);
  HelperProcess help(directory.path(), {"--help"});
  EXPECT_THAT(help.restOfOutput(), ::testing::HasSubstr("--version"));
  EXPECT_EQ(help.wait(), 0);
}

TEST(VelmoraProgram, RefusesArgumentsThatItDoesNotKnow) {
  const TemporaryDirectory directory;
  HelperProcess helper(directory.path(), {"--nonsense"});
  EXPECT_EQ(helper.restOfOutput(), "");
  EXPECT_THAT(helper.restOfErrors(), ::testing::HasSubstr("--nonsense"));
  EXPECT_NE(helper.wait(), 0);
}

}  // namespace
}  // namespace velmora
