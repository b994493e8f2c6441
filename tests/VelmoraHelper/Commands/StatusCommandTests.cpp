#include "VelmoraHelper/Commands/StatusCommand.h"
#include "tests/VelmoraHelper/Commands/CommandFixture.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;

class StatusCommand : public testing::CommandFixture {
 protected:
  StatusCommand() {
    answer = [this](const auto& request) {
      return request.operation == ToolName::status ? success(request, StatusPayload{status})
                                                   : success(request, SessionsPayload{sessions});
    };
  }

  BridgeStatus status{.automationPermission = AutomationPermission::granted};
  std::vector<TerminalSession> sessions;
};

TEST_F(StatusCommand, ShowsTheBridgeTheTerminalThePermissionAndEverySession) {
  status.terminalState = TerminalState::available;
  status.windowCount = 2;
  TerminalSession first;
  first.sessionId = *Uuid::parse("11111111-2222-3333-4444-555555555555");
  first.tty = "/dev/pts/3";
  first.title = "main: bash";
  TerminalSession second;
  second.sessionId = *Uuid::parse("AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE");
  second.tty = "/dev/pts/4";
  second.title = "한국어";
  second.permission = SessionPermission::readOnly;
  second.busy = true;
  sessions = {first, second};
  EXPECT_EQ(printStatus(context()), ExitStatus::success);
  EXPECT_EQ(out.str(),
            "Bridge:      active\n"
            "Accepting:   yes\n"
            "Terminal:    available, 2 windows\n"
            "Permission:  granted\n"
            "Settings:    none stored; session policy safe\n"
            "Sessions:    2\n"
            "  11111111-2222-3333-4444-555555555555  managed  /dev/pts/3  main: bash\n"
            "  AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE  readOnly, busy  /dev/pts/4  한국어\n");
  EXPECT_EQ(err.str(), "");
}

TEST_F(StatusCommand, AsksForNoSessionsWhenTheTerminalHasNone) {
  for (const auto& [state, words] :
       {std::pair{TerminalState::notRunning, "not running"},
        std::pair{TerminalState::noWindows, "running, without a window"},
        std::pair{TerminalState::unavailable, "unavailable: tmux did not answer in time."}}) {
    status.terminalState = state;
    status.lastError = StructuredError{.message = "tmux did not answer in time."};
    out.str("");
    requests.clear();
    EXPECT_EQ(printStatus(context()), ExitStatus::success);
    EXPECT_THAT(out.str(), HasSubstr("\nTerminal:    " + std::string(words) + "\n"));
    EXPECT_EQ(requests.size(), 1u);
  }
}

TEST_F(StatusCommand, SaysWhatPausedMeans) {
  status.mcpState = MCPState::paused;
  EXPECT_EQ(printStatus(context()), ExitStatus::success);
  EXPECT_THAT(out.str(), ::testing::StartsWith("Bridge:      paused: "));
}

TEST_F(StatusCommand, KeepsTheControlCharactersOfATitleFromTheTerminal) {
  status.terminalState = TerminalState::available;
  sessions.resize(1);
  sessions[0].title =
      "a\x1B]0;b\x07\xC2\x9B"
      "c\n";
  EXPECT_EQ(printStatus(context()), ExitStatus::success);
  EXPECT_THAT(out.str(), HasSubstr("a?]0;b??c?\n"));
}

TEST_F(StatusCommand, FailsWhenTheApplicationIsAbsentOrRefuses) {
  answer = absent;
  connect = [] { throw UnixSocketError::system("connect", ENOENT); };
  EXPECT_EQ(printStatus(context()), ExitStatus::failure);
  EXPECT_THAT(err.str(), HasSubstr("Velmora is not running."));
  EXPECT_EQ(out.str(), "Accepting:   no\n");

  answer = [this](const auto& request) {
    if (request.operation != ToolName::status)
      return failure(request, ErrorCode::terminalNotRunning, "It went.");
    status.terminalState = TerminalState::available;
    return success(request, StatusPayload{status});
  };
  EXPECT_EQ(printStatus(context()), ExitStatus::failure);
  EXPECT_THAT(err.str(), HasSubstr("It went. (TERMINAL_NOT_RUNNING)"));
}

TEST_F(StatusCommand, KnowsABridgeThatAcceptsAndDoesNotAnswer) {
  answer = [](const auto&) -> LocalControlResponse { throw UnixSocketError::disconnected(); };
  EXPECT_EQ(printStatus(context()), ExitStatus::failure);
  EXPECT_EQ(out.str(), "Accepting:   yes\n");
}

TEST_F(StatusCommand, FailsOnAnAnswerOfAnotherVersion) {
  answer = [](const auto& request) {
    return LocalControlResponse{.requestId = request.requestId, .ok = true, .data = JSONObject{}};
  };
  EXPECT_EQ(printStatus(context()), ExitStatus::failure);
  EXPECT_THAT(err.str(), HasSubstr("Update Velmora and velmora to the same version."));
}

TEST_F(StatusCommand, WaitsLittleLongerThanTheApplicationForItsTerminal) {
  printStatus(context());
  EXPECT_EQ(deadlines, (std::vector<std::chrono::seconds>{std::chrono::seconds(10)}));
}

}  // namespace
}  // namespace velmora
