// The program `velmora` with arguments, as a person runs it, without an application or with one that
// misbehaves.
#include <gmock/gmock.h>

#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "tests/VelmoraHelper/HelperProcess.h"
#include "tests/support/RecordHandler.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

struct Outcome {
  int status;
  std::string output;
  std::string errors;
};

class CommandsWithoutBridge : public ::testing::Test {
 protected:
  Outcome run(std::vector<std::string> arguments, const std::string& input = "") const {
    testing::HelperProcess program(directory.path(), std::move(arguments));
    program.write(input);
    program.closeInput();
    auto output = program.restOfOutput();
    auto errors = program.restOfErrors();
    return {program.wait(), std::move(output), std::move(errors)};
  }

  TemporaryDirectory directory;
  std::filesystem::path socket = directory / UnixSocketEndpoint::directoryName / UnixSocketEndpoint::fileName;
};

TEST_F(CommandsWithoutBridge, EveryCommandSaysItsUseAndItsVersionAndRefusesWhatItDoesNotKnow) {
  const auto version = run({"--version"}).output;
  EXPECT_THAT(version, StartsWith("velmora 0."));
  for (const auto* command : {"call", "status", "sessions", "history", "watch", "pause", "resume", "permit",
                              "policy", "busy", "doctor", "config", "shell-integration"}) {
    const auto help = run({command, "--help"});
    EXPECT_EQ(help.status, 0) << command;
    EXPECT_THAT(help.output, HasSubstr("Usage: velmora " + std::string(command))) << command;
    const auto told = run({command, "--version"});
    EXPECT_EQ(told.status, 0) << command;
    EXPECT_EQ(told.output, version) << command;
    EXPECT_EQ(told.errors, "") << command;
    const auto unknown = run({command, "--nonsense"});
    EXPECT_EQ(unknown.status, 2) << command;
    EXPECT_EQ(unknown.output, "") << command;
    EXPECT_THAT(unknown.errors, HasSubstr("--help")) << command;
  }
}

TEST_F(CommandsWithoutBridge, ConfigGivesTheClientAPathThatStartsThisProgram) {
  const auto config = run({"config", "cursor"});
  EXPECT_EQ(config.status, 0);
  EXPECT_THAT(config.errors, HasSubstr("~/.cursor/mcp.json"));
  const auto document = parseJson(config.output);
  EXPECT_EQ(document.at("mcpServers").at("terminal").at("command"), VELMORA_BIN "/velmora");
}

TEST_F(CommandsWithoutBridge, CallSaysWhatToStart) {
  const auto call = run({"call", "terminal_list_sessions", "-"}, "{}");
  EXPECT_EQ(call.status, 1);
  EXPECT_EQ(call.output, "");
  EXPECT_EQ(call.errors,
            "velmora: Velmora is not running. (BRIDGE_UNAVAILABLE)\n"
            "Open Velmora (or start velmora-headless), then retry.\n");
}

TEST_F(CommandsWithoutBridge, StatusSaysTheSame) {
  EXPECT_EQ(run({"status"}).status, 1);
  EXPECT_THAT(run({"status"}).errors, StartsWith("velmora: Velmora is not running."));
}

TEST_F(CommandsWithoutBridge, DoctorFindsTheHelperTmuxAndThatNothingListens) {
  const auto doctor = run({"doctor"});
  EXPECT_EQ(doctor.status, 1);
  EXPECT_THAT(doctor.output,
              ::testing::MatchesRegex("OK    helper: velmora [0-9.]+ at /.*/velmora\n"
                                      "OK    tmux: tmux .* at /.*/tmux\n"
                                      "OK    settings: none stored; session policy safe\n"
                                      "OK    limits: agents may type into every session, .*\n"
                                      "OK    socket: .*/control-v1\\.sock, not there yet\n"
                                      "FAIL  application: not running\\. Next: Open Velmora .*\\.\n"));
  EXPECT_EQ(doctor.errors, "");
}

TEST_F(CommandsWithoutBridge, NonsenseIsRefusedWithTwo) {
  EXPECT_EQ(run({"call", "terminal_statsu"}).status, 2);
  EXPECT_THAT(run({"call", "terminal_statsu"}).errors, HasSubstr("did you mean terminal_status?"));
  EXPECT_EQ(run({"call", "terminal_status", "-"}, "no JSON").status, 2);
  EXPECT_EQ(run({"cofnig"}).status, 2);
}

TEST_F(CommandsWithoutBridge, CallPrintsThePayloadThatTheApplicationAnswers) {
  LocalControlServer server(testing::recordHandler([](const LocalControlRequest& request) {
                              return LocalControlResponse{.requestId = request.requestId,
                                                          .ok = true,
                                                          .data = JSONObject{{"echo", request.arguments}}};
                            }),
                            socket);
  server.start();
  const auto call = run({"call", "terminal_send_command", R"({"command":"it's \"한국어\"\n"})"});
  EXPECT_EQ(call.status, 0) << call.errors;
  EXPECT_EQ(decodeJson<JSONValue>(call.output),
            JSONValue(JSONObject{{"echo", JSONObject{{"command", "it's \"한국어\"\n"}}}}));
}

TEST_F(CommandsWithoutBridge, DoctorFindsAnApplicationOfAnotherVersion) {
  LocalControlServer server(testing::recordHandler([](const LocalControlRequest& request) {
                              return LocalControlResponse{
                                  .requestId = request.requestId,
                                  .error = StructuredError{.code = ErrorCode::invalidArgument,
                                                           .message = unsupportedProtocolVersionMessage}};
                            }),
                            socket);
  server.start();
  const auto doctor = run({"doctor"});
  EXPECT_EQ(doctor.status, 1);
  EXPECT_THAT(doctor.output,
              HasSubstr("FAIL  answer: The running Velmora is of another version than this helper"));
}

// A socket that is listened at, where nobody ever accepts.
TEST_F(CommandsWithoutBridge, DoctorNeverHangsOnAnApplicationThatDoes) {
  const UnixSocketServer silent(socket);
  const auto started = std::chrono::steady_clock::now();
  const auto doctor = run({"doctor"});
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(25));
  EXPECT_EQ(doctor.status, 1);
  EXPECT_THAT(doctor.output, HasSubstr("FAIL  answer: Velmora did not answer within 10 seconds. Next: "));
}

TEST_F(CommandsWithoutBridge, DoctorFindsASocketThatOthersCanReach) {
  const UnixSocketServer server(socket);
  std::filesystem::permissions(socket.parent_path(), std::filesystem::perms::all);
  const auto doctor = run({"doctor"});
  EXPECT_EQ(doctor.status, 1);
  EXPECT_THAT(doctor.output,
              HasSubstr("FAIL  socket: others have access to " + socket.parent_path().string()));
}

}  // namespace
}  // namespace velmora
