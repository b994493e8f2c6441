#include <algorithm>

#include "VelmoraHelper/Commands/DoctorCommand.h"
#include "tests/VelmoraHelper/Commands/CommandFixture.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class DoctorCommand : public testing::CommandFixture {
 protected:
  DoctorCommand() {
    answer = [this](const auto& request) { return success(request, StatusPayload{status}); };
  }
  std::vector<std::string> names() {
    std::vector<std::string> result;
    for (const auto& check : examine(context())) result.push_back((check.ok ? "" : "! ") + check.name);
    return result;
  }
  Check check(const std::string& name) {
    for (auto& found : examine(context())) {
      if (found.name == name) return found;
    }
    return {.name = "no check " + name};
  }

  BridgeStatus status{.terminalState = TerminalState::available,
                      .automationPermission = AutomationPermission::granted,
                      .windowCount = 3};
};

TEST_F(DoctorCommand, PrintsOneLineACheckWhenEverythingIsInOrder) {
  EXPECT_EQ(printDiagnosis(context()), ExitStatus::success);
  EXPECT_EQ(out.str(),
            "OK    helper: velmora 1.2.3 at /opt/velmora/bin/velmora\n"
            "OK    tmux: tmux 3.4 at /usr/bin/tmux\n"
            "OK    settings: none stored; session policy safe\n"
            "OK    limits: agents may type into every session, but not into busy ones; no history is kept\n"
            "OK    socket: /nonexistent/app.velmora.Velmora/control-v1.sock, not there yet\n"
            "OK    application: reachable\n"
            "OK    same user: user " +
                std::to_string(::geteuid()) +
                "\n"
                "OK    answer: the bridge is active\n"
                "OK    terminal: windows: 3\n"
                "OK    permission: granted\n");
  EXPECT_EQ(err.str(), "");
}

TEST_F(DoctorCommand, SaysTheNextStepOnTheLineOfWhatIsWrongAndFails) {
  connect = [] { throw UnixSocketError::system("connect", ECONNREFUSED); };
  EXPECT_EQ(printDiagnosis(context()), ExitStatus::failure);
  EXPECT_THAT(out.str(),
              ::testing::EndsWith(
                  "FAIL  application: not running. Next: Open Velmora (or start velmora-headless).\n"));
}

TEST_F(DoctorCommand, PrintsEveryLineAsAnObjectForScripts) {
  connect = [] { throw UnixSocketError::system("connect", ECONNREFUSED); };
  EXPECT_EQ(printDiagnosis(context()), ExitStatus::failure);
  const auto text = out.str();
  out.str("");
  EXPECT_EQ(printDiagnosis(context(), true), ExitStatus::failure);
  const auto lines = parseJson(out.str()).as_array();
  EXPECT_EQ(lines.size(), static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
  EXPECT_EQ(lines.front(), boost::json::value({{"id", "helper"},
                                               {"state", "ok"},
                                               {"text", "velmora 1.2.3 at /opt/velmora/bin/velmora"},
                                               {"advice", ""}}));
  EXPECT_EQ(lines.back(), boost::json::value({{"id", "application"},
                                              {"state", "fail"},
                                              {"text", "not running"},
                                              {"advice", "Open Velmora (or start velmora-headless)."}}));
  out.str("");
  connect = [] {};
  printDiagnosis(context(), true);
  EXPECT_EQ(parseJson(out.str()).at(6).at("id"), "same-user");
}

TEST_F(DoctorCommand, EveryFailureHasANextStep) {
  program = "velmora";
  programAnswer.end = ProgramAnswer::End::notFound;
  connect = [] { throw UnixSocketError::peerRejected(); };
  int failed = 0;
  for (const auto& found : examine(context())) {
    EXPECT_EQ(found.ok, found.nextStep.empty()) << found.name;
    EXPECT_NE(found.finding, "") << found.name;
    failed += found.ok ? 0 : 1;
  }
  EXPECT_EQ(failed, 3);
}

TEST_F(DoctorCommand, LeavesOutWhatAnEarlierFailureHides) {
  connect = [] { throw UnixSocketError::system("connect", ENOENT); };
  EXPECT_THAT(names(), ElementsAre("helper", "tmux", "settings", "limits", "socket", "! application"));
  EXPECT_TRUE(requests.empty());
  socketURL = "/" + std::string(200, 'x') + "/control-v1.sock";
  EXPECT_THAT(names(), ElementsAre("helper", "tmux", "settings", "limits", "! socket"));
}

TEST_F(DoctorCommand, TellsAnotherUsersApplicationFromNone) {
  connect = [] { throw UnixSocketError::peerRejected(); };
  EXPECT_THAT(names(),
              ElementsAre("helper", "tmux", "settings", "limits", "socket", "application", "! same user"));
}

TEST_F(DoctorCommand, SaysWhenTheApplicationAnswersAtAnotherPlaceThanTheFirst) {
  answersAt = "/nonexistent/tmp/app.velmora.Velmora/control-v1.sock";
  EXPECT_TRUE(check("socket").ok);
  EXPECT_EQ(check("socket").finding,
            answersAt.string() + ", not there yet; nothing answers at " + socketURL.string());
  EXPECT_TRUE(check("application").ok);
}

TEST_F(DoctorCommand, TellsAHangingApplicationFromAnAbsentOne) {
  connect = [] { throw UnixSocketError::system("connect", EAGAIN); };
  EXPECT_EQ(check("application").finding, "running, but it accepts no more connections");
  connect = [] {};
  answer = [this](const auto&) {
    return testing::recordOf(answerToSilence(testing::bridgeRequest(requests.back()), deadlines.back()));
  };
  EXPECT_THAT(names(), ElementsAre("helper", "tmux", "settings", "limits", "socket", "application",
                                   "same user", "! answer"));
  EXPECT_EQ(check("answer").finding, "Velmora did not answer within 10 seconds.");
}

TEST_F(DoctorCommand, NamesTheProcessThatHangsAndWhatToDoAboutIt) {
  RunningProcess process{.name = "velmora-headless"};
  const auto hanging = [&] {
    auto made = context();
    made.bridgeProcess = [] { return 4711; };
    made.processNamed = [&](pid_t) { return process; };
    return examine(made).back();
  };
  answer = [this](const auto&) {
    return testing::recordOf(answerToSilence(testing::bridgeRequest(requests.back()), deadlines.back()));
  };
  EXPECT_EQ(hanging().name, "answer");
  EXPECT_EQ(
      hanging().nextStep,
      "End process 4711 (kill 4711, or kill -KILL 4711 when that does nothing), then start Velmora again.");
  process.isStopped = true;
  EXPECT_EQ(hanging().nextStep, "Process 4711 is stopped; let it go on: kill -CONT 4711");
}

TEST_F(DoctorCommand, NamesTheTmuxServerOfTheBridgeAndTheOthers) {
  const TemporaryDirectory folder;
  socketURL = folder / "app.velmora.Velmora/control-v1.sock";
  testing::writeFile(folder / "app.velmora.Velmora/tmux-way", "over its own socket\n/tmp/tmux-7/default");
  std::filesystem::permissions(socketURL.parent_path(), std::filesystem::perms::owner_all);
  auto made = context();
  made.tmuxServers = [](const std::filesystem::path& ofBridge) {
    return std::vector<std::filesystem::path>{ofBridge, "/tmp/tmux-7/work"};
  };
  const auto found = examine(made);
  const auto line = [&](const std::string& name) {
    return std::find_if(found.begin(), found.end(), [&](const Check& one) { return one.name == name; });
  };
  ASSERT_NE(line("tmux socket"), found.end());
  EXPECT_EQ(line("tmux server")->finding, "asked over its own socket");
  EXPECT_EQ(line("tmux socket")->finding,
            "the bridge looks at /tmp/tmux-7/default; not used by Velmora: /tmp/tmux-7/work");
}

TEST_F(DoctorCommand, SaysThatTheChannelIsOfAnotherVersion) {
  answer = [](const auto& request) {
    return failure(request, ErrorCode::invalidArgument, unsupportedProtocolVersionMessage);
  };
  EXPECT_THAT(check("answer").finding, HasSubstr("of another version than this helper"));
  EXPECT_THAT(check("answer").nextStep, HasSubstr("start the version that this helper belongs to"));
}

TEST_F(DoctorCommand, PassesOnWhatTheApplicationSaysOfItsTerminal) {
  status.terminalState = TerminalState::unavailable;
  status.automationPermission = AutomationPermission::unknown;
  status.lastError =
      StructuredError{.message = "tmux did not answer in time.", .recoverySuggestion = "Look."};
  EXPECT_THAT(names(), ElementsAre("helper", "tmux", "settings", "limits", "socket", "application",
                                   "same user", "answer", "! terminal"));
  EXPECT_EQ(check("terminal").finding, "tmux did not answer in time.");
  EXPECT_EQ(check("terminal").nextStep, "Look.");
}

TEST_F(DoctorCommand, FindsADeniedPermission) {
  status.automationPermission = AutomationPermission::denied;
  for (const auto state : {TerminalState::unavailable, TerminalState::available}) {
    status.terminalState = state;
    EXPECT_FALSE(check("permission").ok);
    EXPECT_THAT(check("permission").nextStep, HasSubstr("System Settings"));
  }
}

TEST_F(DoctorCommand, ATerminalThatIsNotOpenIsNoFault) {
  status.automationPermission = AutomationPermission::unknown;
  for (const auto state : {TerminalState::notRunning, TerminalState::noWindows}) {
    status.terminalState = state;
    EXPECT_TRUE(check("terminal").ok);
    EXPECT_TRUE(check("permission").ok);
  }
}

TEST_F(DoctorCommand, APausedBridgeIsNoFaultButIsSaid) {
  status.mcpState = MCPState::paused;
  EXPECT_TRUE(check("answer").ok);
  EXPECT_THAT(check("answer").finding, HasSubstr("paused"));
}

TEST_F(DoctorCommand, FindsAHelperThatNoClientCanBeGiven) {
  program = "";
  EXPECT_FALSE(check("helper").ok);
  program = "/opt/\xFF/velmora";
  EXPECT_FALSE(check("helper").ok);
  printDiagnosis(context());
  EXPECT_THAT(out.str(), HasSubstr("its path is not UTF-8: /opt/\xEF\xBF\xBD/velmora. Next: "));
}

}  // namespace
}  // namespace velmora
