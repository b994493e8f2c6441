#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/TmuxOperations.h"
#include "tests/TerminalAutomation/Tmux/ScriptedTmux.h"
#include "tests/support/FakeTime.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using testing::clientLine;
using testing::paneLine;
using testing::samplePane;
using testing::structuredError;

class TmuxOperationsTest : public ::testing::Test {
 protected:
  TmuxOperationsTest() {
    options_ = {.environment = {{"PATH", "/usr/bin:/bin"}},
                .program = "/opt/tmux",
                .temporaryDirectory = directory_.path(),
                .homeDirectory = "/home/user",
                .uuid = testing::countingUuids(),
                .sleep = [this](std::chrono::milliseconds pause) { slept_ += pause; }};
    parts_.transport = std::make_unique<testing::ScriptedTransport>(tmux_);
    parts_.processes = std::make_unique<testing::ScriptedProcesses>(processes_);
    parts_.desktop = std::make_unique<testing::ScriptedDesktop>(desktop_);
    parts_.drawPicture = [](const PaneScreen&) { return std::string("png"); };
    operations_ = std::make_unique<TmuxOperations>(options_, parts_);
    idle(pane_);
  }

  void idle(const PaneRow& pane) {
    processes_.states[pane.process] = {
        .name = "bash", .group = pane.process, .foregroundGroup = pane.process};
    processes_.collectsLines[pane.tty] = false;
  }
  void answers(std::vector<std::string> outputs) {
    tmux_.answers.clear();
    for (std::string& output : outputs) tmux_.answers.push_back({.output = std::move(output)});
  }
  static TmuxAnswer failed(std::string error) {
    return {.end = TmuxAnswer::End::exited, .exitStatus = 1, .output = {}, .errorOutput = std::move(error)};
  }
  std::int64_t id() const { return WindowIds().windowId(pane_); }
  void send(bool allowBusy = false) { operations_->sendCommand("ls", pane_.tty, id(), allowBusy); }

  TemporaryDirectory directory_;
  TmuxExecutorOptions options_;
  TmuxParts parts_;
  testing::ScriptedTransport::State tmux_;
  testing::ScriptedProcesses::State processes_;
  testing::ScriptedDesktop::State desktop_;
  std::chrono::milliseconds slept_{0};
  std::unique_ptr<TmuxOperations> operations_;
  PaneRow pane_ = samplePane(3, 2);
};

TEST_F(TmuxOperationsTest, ListsInOneInvocation) {
  answers(
      {paneLine(pane_) + clientLine({.activity = 1, .created = 1, .session = 0, .window = 2, .name = "c"})});
  EXPECT_EQ(operations_->listSessions(), (std::vector<TerminalTabSnapshot>{{.tty = "/dev/pts/3",
                                                                            .windowId = id(),
                                                                            .windowIndex = 1,
                                                                            .tabIndex = 1,
                                                                            .title = "s0: shell",
                                                                            .busy = false,
                                                                            .selected = true}}));
  EXPECT_EQ(tmux_.invocations.size(), 1u);
}

TEST_F(TmuxOperationsTest, ADeadPaneIsNotBusy) {
  processes_.states.clear();
  answers({paneLine(pane_)});
  EXPECT_TRUE(operations_->listSessions().front().busy);
  pane_.dead = true;
  answers({paneLine(pane_)});
  EXPECT_FALSE(operations_->listSessions().front().busy);
}

TEST_F(TmuxOperationsTest, StatusCountsWindows) {
  answers({paneLine(samplePane(1, 1)) + paneLine(samplePane(2, 1)) + paneLine(samplePane(3, 2))});
  EXPECT_EQ(operations_->status(), (TerminalRuntimeStatus{true, 2, AutomationPermission::granted}));
  tmux_.answers = {failed("no server running on /x\n")};
  EXPECT_EQ(operations_->status(), (TerminalRuntimeStatus{false, 0, AutomationPermission::unknown}));
  tmux_.answers = {failed("no current target\n")};
  EXPECT_EQ(operations_->status(), (TerminalRuntimeStatus{true, 0, AutomationPermission::granted}));
  tmux_.answers = {{.end = TmuxAnswer::End::timedOut}};
  EXPECT_EQ(structuredError([&] { operations_->status(); }).operation, "terminal_status");
}

TEST_F(TmuxOperationsTest, LooksTwiceWhenTheServerIsLost) {
  tmux_.answers = {failed("server exited unexpectedly\n"), failed("no server running on /x\n")};
  EXPECT_EQ(structuredError([&] { operations_->listSessions(); }).code, ErrorCode::terminalNotRunning);
  tmux_.answers = {failed("lost server\n"), {.output = paneLine(pane_)}};
  EXPECT_EQ(operations_->listSessions().size(), 1u);
}

TEST_F(TmuxOperationsTest, RefusesAServerThatIsTooOld) {
  pane_.version = "3.1c";
  answers({paneLine(pane_)});
  const auto error = structuredError([&] { operations_->listSessions(); });
  EXPECT_EQ(error.message, "tmux 3.1c is too old; Velmora needs 3.2 or newer.");
  EXPECT_FALSE(error.retryable);
}

TEST_F(TmuxOperationsTest, SendsInTwoInvocationsWithOneDeadline) {
  answers({paneLine(pane_), ""});
  send();
  ASSERT_EQ(tmux_.invocations.size(), 2u);
  EXPECT_EQ(tmux_.invocations[0].arguments[3], "#{==:#{pane_tty},/dev/pts/3}");
  EXPECT_EQ(tmux_.invocations[1].standardInput, "ls");
  EXPECT_EQ(tmux_.invocations[0].deadline, tmux_.invocations[1].deadline);
}

TEST_F(TmuxOperationsTest, NeverNamesABufferTwice) {
  std::vector<std::string> names;
  for (int i = 0; i < 3; ++i) {
    answers({paneLine(pane_), ""});
    send();
    names.push_back(tmux_.invocations.back().arguments[2]);
  }
  EXPECT_NE(names[0], names[1]);
  EXPECT_NE(names[1], names[2]);
}

TEST_F(TmuxOperationsTest, SendsNothingToAPaneThatIsNotAsItWas) {
  PaneRow changed = pane_;
  const auto refusedBeforeTyping = [&](const PaneRow& row) {
    answers({paneLine(row)});
    tmux_.invocations.clear();
    const auto error = structuredError([&] { send(); });
    EXPECT_EQ(tmux_.invocations.size(), 1u);
    return error.code;
  };
  changed.window = 9;
  EXPECT_EQ(refusedBeforeTyping(changed), ErrorCode::sessionStale);
  changed = pane_;
  changed.tty = "/dev/pts/4";
  EXPECT_EQ(refusedBeforeTyping(changed), ErrorCode::sessionStale);
  changed = pane_;
  changed.dead = true;
  EXPECT_EQ(refusedBeforeTyping(changed), ErrorCode::sessionStale);
  changed = pane_;
  changed.inputOff = true;
  EXPECT_EQ(refusedBeforeTyping(changed), ErrorCode::sessionNotAllowed);
  processes_.states[pane_.process].foregroundGroup = 1;
  EXPECT_EQ(refusedBeforeTyping(pane_), ErrorCode::sessionBusy);
  answers({paneLine(pane_), ""});
  send(/*allowBusy=*/true);
}

TEST_F(TmuxOperationsTest, TheGuardsRefusalIsStale) {
  answers({paneLine(pane_), "STALE\n"});
  EXPECT_EQ(structuredError([&] { send(); }).code, ErrorCode::sessionStale);
  answers({paneLine(pane_), "STALE\n"});
  EXPECT_EQ(
      structuredError([&] { operations_->sendKey(TerminalKey::tab, 1, pane_.tty, id(), false); }).operation,
      "terminal_send_key");
  answers({paneLine(pane_), "STALE\n"});
  EXPECT_EQ(structuredError([&] { operations_->readOutput(OutputSource::visible, 9, pane_.tty, id()); }).code,
            ErrorCode::sessionStale);
}

TEST_F(TmuxOperationsTest, ALostServerWhileTypingLeavesTheOutcomeUnknown) {
  tmux_.answers = {{.output = paneLine(pane_)}, failed("server exited unexpectedly\n")};
  const auto error = structuredError([&] { send(); });
  EXPECT_EQ(error.code, ErrorCode::terminalNotAvailable);
  EXPECT_FALSE(error.retryable);
}

TEST_F(TmuxOperationsTest, ReadsWithTheHistorysOwnDeadlineAndLimit) {
  answers({paneLine(pane_), "PANE\none  \ntwo\n\n"});
  const TerminalOutput output = operations_->readOutput(OutputSource::history, 3, pane_.tty, id());
  EXPECT_EQ(output,
            (TerminalOutput{.text = "two", .source = OutputSource::history, .originalCharacterCount = 7}));
  EXPECT_GT(tmux_.invocations[1].deadline, tmux_.invocations[0].deadline + std::chrono::seconds(20));
  EXPECT_EQ(tmux_.invocations[1].outputLimit, std::size_t{256} << 20);
}

TEST_F(TmuxOperationsTest, CreatesAgainOnceWhenTheFormerServerWasEnding) {
  tmux_.answers = {failed("server exited unexpectedly\n"),
                   {.output = paneLine(pane_) + "off\n"},
                   {.output = paneLine(pane_)}};
  EXPECT_EQ(operations_->createWindow().tty, pane_.tty);
  EXPECT_EQ(slept_, std::chrono::milliseconds(300));
  tmux_.answers = {failed("server exited unexpectedly\n")};
  EXPECT_EQ(structuredError([&] { operations_->createWindow(); }).retryable, false);
}

TEST_F(TmuxOperationsTest, WaitsForThePromptForTwoSecondsAtMost) {
  processes_.states[pane_.process].name = "tmux: server";
  answers({paneLine(pane_) + "off\n", paneLine(pane_)});
  EXPECT_TRUE(operations_->createWindow().busy);
  EXPECT_EQ(slept_, std::chrono::seconds(2));
}

TEST_F(TmuxOperationsTest, AServerThatHangsAfterCreatingIsNotAskedForAnotherSession) {
  tmux_.answers = {{.output = paneLine(pane_) + "off\n"}, {.end = TmuxAnswer::End::timedOut}};
  const auto error = structuredError([&] { operations_->createWindow(); });
  EXPECT_EQ(error.code, ErrorCode::terminalNotAvailable);
  EXPECT_FALSE(error.retryable);
  EXPECT_NE(error.recoverySuggestion.find("List the sessions"), std::string::npos);
}

TEST_F(TmuxOperationsTest, AnAnswerToCreatingThatIsNoRowIsAnError) {
  for (const std::string output : {"", "text", "text\n", "\n"}) {
    answers({output});
    EXPECT_EQ(structuredError([&] { operations_->createWindow(); }).code,
              ErrorCode::appleScriptExecutionFailed);
  }
}

TEST_F(TmuxOperationsTest, AScreenThatCannotBeUnderstoodIsAnError) {
  for (const std::string output : {"PANE", "PANE\n", "PANE\t1\t2\t3\t4\nx", "PANE\t1\t2\tx\t4\t5\n"}) {
    answers({paneLine(pane_), output});
    EXPECT_EQ(structuredError([&] { operations_->captureScreen(pane_.tty, id()); }).code,
              ErrorCode::appleScriptExecutionFailed)
        << output;
  }
}

TEST_F(TmuxOperationsTest, APictureThatCannotBeDrawnIsAnError) {
  parts_.drawPicture = [](const PaneScreen&) -> std::string { throw std::runtime_error("no memory"); };
  answers({paneLine(pane_), "PANE\t80\t24\t0\t0\t1\ntext\n"});
  const auto error = structuredError([&] { operations_->captureScreen(pane_.tty, id()); });
  EXPECT_EQ(error.code, ErrorCode::screenCaptureUnavailable);
  EXPECT_NE(error.message.find("no memory"), std::string::npos);
}

TEST_F(TmuxOperationsTest, FocusWithoutAScreenSelectsAndIsContent) {
  answers({paneLine(pane_), paneLine(pane_), ""});
  operations_->focus(pane_.tty, id());
  EXPECT_EQ(tmux_.invocations[2].arguments,
            (std::vector<std::string>{"select-window", "-t", "$0:@2", ";", "select-pane", "-t", "%3"}));
  EXPECT_EQ(desktop_.opened,
            (std::vector<std::vector<std::string>>{
                {"/opt/tmux", "-u", "-S", "/nowhere/socket", "attach-session", "-t", "%3"}}));
}

TEST_F(TmuxOperationsTest, FocusWaitsForTheTerminalThatItOpened) {
  desktop_.opens = true;
  answers(
      {paneLine(pane_), paneLine(pane_), "", paneLine(pane_),
       paneLine(pane_) + clientLine({.activity = 1, .created = 1, .session = 0, .window = 2, .name = "c"})});
  operations_->focus(pane_.tty, id());
  EXPECT_EQ(slept_, std::chrono::milliseconds(20));
  answers({paneLine(pane_), paneLine(pane_), "", paneLine(pane_)});
  EXPECT_EQ(structuredError([&] { operations_->focus(pane_.tty, id()); }).code,
            ErrorCode::terminalNotAvailable);
}

}  // namespace
}  // namespace velmora
