// The program `velmora` with arguments, with a real bridge and a tmux server of the test's own.
#include <gmock/gmock.h>

#include "BridgeModels/Json/JsonReader.h"
#include "tests/BridgeHost/HeadlessFixture.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

class CommandsWithBridge : public testing::HeadlessFixture {
 protected:
  struct Outcome {
    int status;
    std::string output;
    std::string errors;
  };

  Outcome run(std::vector<std::string> arguments, const std::string& input = "") const {
    arguments.insert(arguments.begin(), VELMORA_BIN "/velmora");
    testing::ChildProgram program(std::move(arguments), environment);
    program.write(input);
    program.closeInput();
    auto output = program.restOfOutput();
    auto errors = program.restOfErrors();
    return {program.wait(), std::move(output), std::move(errors)};
  }
  JSONValue called(const std::string& tool, const JSONObject& arguments = {}) const {
    const auto outcome = run({"call", tool, "-"}, encodeJson(arguments));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    return decodeJson<JSONValue>(outcome.output);
  }
};

TEST_F(CommandsWithBridge, CallReachesThePaneAndReadsItBack) {
  startTmux();
  startHeadless();
  const auto id = textAt(at(called("terminal_create_session"), "session"), "sessionId");
  EXPECT_EQ(textAt(called("terminal_send_command", {{"sessionId", id}, {"command", "echo out-$((40 + 2))"}}),
                   "deliveryStatus"),
            "delivered_to_terminal");
  EXPECT_TRUE(testing::eventually([&] {
    return textAt(called("terminal_read_output", {{"sessionId", id}}), "text").find("\nout-42") !=
           std::string::npos;
  }));
  const auto refused = run({"call", "terminal_focus_session", R"({"sessionId":"no id"})"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.errors, HasSubstr("(INVALID_ARGUMENT)"));
  EXPECT_THAT(refused.errors, HasSubstr("sessionId: "));
}

TEST_F(CommandsWithBridge, StatusShowsTheSessions) {
  startTmux();
  startHeadless();
  const auto status = run({"status"});
  EXPECT_EQ(status.status, 0) << status.errors;
  EXPECT_THAT(status.output, MatchesRegex("Bridge:      active\n"
                                          "Accepting:   yes\n"
                                          "Terminal:    available, 1 window\n"
                                          "Permission:  granted\n"
                                          "Settings:    none stored; session policy safe\n"
                                          "Sessions:    1\n"
                                          "  [0-9A-F-]+  managed(, busy)?  /dev/pts/[0-9]+  main.*\n"));
}

TEST_F(CommandsWithBridge, StatusSaysThatNoTerminalRuns) {
  startHeadless();
  EXPECT_THAT(run({"status"}).output, HasSubstr("\nTerminal:    not running\n"));
}

TEST_F(CommandsWithBridge, DoctorPassesEverythingThatIsInOrder) {
  startTmux();
  startHeadless();
  const auto doctor = run({"doctor"});
  EXPECT_EQ(doctor.status, 0);
  EXPECT_THAT(doctor.output, ::testing::Not(HasSubstr("FAIL")));
  for (const auto* name : {"helper", "tmux", "settings", "limits", "socket", "application", "same user",
                           "process", "answer", "terminal", "tmux socket", "permission"}) {
    EXPECT_THAT("\n" + doctor.output, HasSubstr("\nOK    " + std::string(name) + ": "));
  }
  EXPECT_EQ(doctor.errors, "");
}

TEST_F(CommandsWithBridge, DoctorSaysHowTmuxIsAsked) {
  startTmux();
  startHeadless();
  EXPECT_THAT(run({"doctor"}).output, HasSubstr("\nOK    tmux server: asked over its own socket\n"));
  EXPECT_EQ(endHeadless(), 0);
  PrivacyRetentionSettings settings;
  settings.tmuxTransport = TmuxTransportChoice::program;
  writeSettings(settings);
  startHeadless();
  EXPECT_THAT(
      run({"doctor"}).output,
      HasSubstr("\nOK    tmux server: asked by the tmux program, as the setting tmuxTransport says\n"));
  called("terminal_list_sessions");
}

TEST_F(CommandsWithBridge, DoctorPassesOnThatTmuxHangs) {
  startTmux();
  startHeadless();
  const auto server = static_cast<pid_t>(std::stol(tmux({"display-message", "-p", "#{pid}"})));
  ::kill(server, SIGSTOP);
  const auto doctor = run({"doctor"});
  ::kill(server, SIGCONT);
  EXPECT_EQ(doctor.status, 1);
  EXPECT_THAT(doctor.output, HasSubstr("\nFAIL  terminal: "));
}

TEST_F(CommandsWithBridge, DoctorSaysThatTheApplicationHangs) {
  startHeadless();
  headless->signal(SIGSTOP);
  const auto doctor = run({"doctor"});
  headless->signal(SIGCONT);
  EXPECT_EQ(doctor.status, 1);
  EXPECT_THAT(doctor.output, HasSubstr("\nFAIL  answer: Velmora did not answer within 10 seconds."));
  EXPECT_THAT(doctor.output, HasSubstr("let it go on: kill -CONT " + std::to_string(headless->process())));
}

// As `tmux -L work` starts one.
TEST_F(CommandsWithBridge, WorksWithTheTmuxServerThatTheSettingNames) {
  const auto work = tmuxSocket().parent_path() / "work";
  startTmux();
  tmux({"kill-session", "-t", "main"});
  tmux({"-S", work.string(), "new-session", "-d", "-s", "elsewhere"});
  const auto server =
      static_cast<pid_t>(std::stol(tmux({"-S", work.string(), "display-message", "-p", "#{pid}"})));
  startHeadless();
  EXPECT_THAT(run({"doctor"}).output,
              HasSubstr("FAIL  tmux socket: the bridge looks at " + tmuxSocket().string() +
                        ", where no server is; there is one at " + work.string() +
                        ". Next: Set \"tmuxSocket\": \"" + work.string() + "\" in settings.json"));
  EXPECT_EQ(endHeadless(), 0);
  PrivacyRetentionSettings settings;
  settings.tmuxSocket = work.string();
  writeSettings(settings);
  startHeadless();
  EXPECT_THAT(run({"doctor"}).output,
              HasSubstr("\nOK    tmux socket: the bridge looks at " + work.string() + "\n"));
  const auto status = run({"status"}).output;
  EXPECT_THAT(status, HasSubstr(", tmux socket " + work.string()));
  EXPECT_THAT(status, HasSubstr("elsewhere"));
  tmux({"-S", work.string(), "kill-server"});
  EXPECT_TRUE(testing::eventually([&] { return !testing::isAlive(server); }));
}

}  // namespace
}  // namespace velmora
