#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "ShellIntegration/ShellRecord.h"
#include "TerminalAutomation/Tmux/TmuxOperations.h"
#include "tests/TerminalAutomation/Tmux/ScriptedTmux.h"
#include "tests/support/FakeTime.h"
#include "tests/support/LogLines.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using testing::clientLine;
using testing::paneAnswer;
using testing::paneLine;
using testing::samplePane;
using testing::serverLine;
using testing::structuredError;

class TmuxOperationsTest : public ::testing::Test {
 protected:
  TmuxOperationsTest() {
    options_ = {.environment = {{"PATH", "/usr/bin:/bin"}},
                .program = "/opt/tmux",
                .temporaryDirectory = directory_.path(),
                .homeDirectory = "/home/user",
                .uuid = testing::countingUuids(),
                .sleep = [this](std::chrono::milliseconds pause) {
                  slept_ += pause;
                  meanwhile_();
                }};
    parts_.transport = std::make_unique<testing::ScriptedTransport>(tmux_);
    parts_.processes = std::make_unique<testing::ScriptedProcesses>(processes_);
    parts_.desktop = std::make_unique<testing::ScriptedDesktop>(desktop_);
    parts_.drawPicture = [](const PaneScreen&) { return std::string("png"); };
    idle(pane_);
  }

  void idle(const PaneRow& pane) {
    processes_.states[pane.process] = {
        .name = "bash", .group = pane.process, .foregroundGroup = pane.process};
    processes_.modes[pane.tty] = {.editsLine = true};
  }
  void answers(std::vector<std::string> outputs) {
    tmux_.answers.clear();
    for (std::string& output : outputs) tmux_.answers.push_back({.output = std::move(output)});
  }
  static TmuxAnswer failed(std::string error) {
    return {.end = TmuxAnswer::End::exited, .exitStatus = 1, .output = {}, .errorOutput = std::move(error)};
  }
  TmuxOperations& operations() {
    if (!operations_) operations_ = std::make_unique<TmuxOperations>(options_, std::move(parts_));
    return *operations_;
  }
  /// Lists `pane`, then forgets that tmux was asked.
  TabAddress listed(const PaneRow& pane) {
    answers({paneAnswer(pane)});
    const auto tab = operations().listSessions(deadline_).front();
    tmux_.invocations.clear();
    return {tab.tty, tab.windowId};
  }
  TabAddress listed() { return listed(pane_); }
  std::int64_t id() const { return PaneDirectory().enter({pane_}); }
  void send(bool allowBusy = false) {
    operations().sendCommand("ls", {pane_.tty, id()}, allowBusy, deadline_);
  }

  TemporaryDirectory directory_;
  TmuxOptions options_;
  TmuxParts parts_;
  testing::ScriptedTransport::State tmux_;
  testing::ScriptedProcesses::State processes_;
  testing::ScriptedDesktop::State desktop_;
  std::chrono::milliseconds slept_{0};
  std::function<void()> meanwhile_ = [] {};  ///< What happens while the adapter sleeps.
  std::unique_ptr<TmuxOperations> operations_;
  PaneRow pane_ = samplePane(3, 2);
  const TmuxOperations::Deadline deadline_ = std::chrono::steady_clock::now() + std::chrono::minutes(5);
};

TEST_F(TmuxOperationsTest, ListsInOneInvocation) {
  answers({paneAnswer(pane_) +
           clientLine({.activity = 1, .created = 1, .session = 0, .window = 2, .name = "c"})});
  const TerminalTabSnapshot expected{.tty = "/dev/pts/3",
                                     .windowId = id(),
                                     .windowIndex = 1,
                                     .tabIndex = 1,
                                     .title = "s0: shell",
                                     .busy = false,
                                     .selected = true,
                                     .identity = paneIdentity(pane_),
                                     .neverShown = true,
                                     .targets = {"%3", "s0:0.0"}};
  EXPECT_EQ(operations().listSessions(deadline_), (std::vector<TerminalTabSnapshot>{expected}));
  EXPECT_EQ(tmux_.invocations.size(), 1u);
}

TEST_F(TmuxOperationsTest, OneTabIsAskedForAlone) {
  const PaneRow other = samplePane(1, 1);
  idle(other);
  answers({serverLine(pane_) + paneLine(other) + paneLine(pane_)});
  const auto all = operations().listSessions(deadline_);
  answers({paneAnswer(pane_)});
  EXPECT_EQ(operations().listTab(pane_.tty, deadline_),
            (std::vector<TerminalTabSnapshot>{all[1].tty == pane_.tty ? all[1] : all[0]}));
  const auto& arguments = tmux_.invocations.back().arguments;
  EXPECT_EQ(arguments,
            (std::vector<std::string>{"display-message", "-p", serverRowFormat(), ";", "list-panes", "-a",
                                      "-F", paneRowFormat(), "-f", "#{==:#{pane_tty},/dev/pts/3}", ";",
                                      "list-clients", "-F", clientRowFormat()}));
}

TEST_F(TmuxOperationsTest, ATerminalThatIsNoPathIsLookedForAmongAll) {
  listed();
  answers({paneAnswer(pane_)});
  operations().listTab("/dev/pts/3},1,#{pane_id", deadline_);
  EXPECT_EQ(std::count(tmux_.invocations[0].arguments.begin(), tmux_.invocations[0].arguments.end(), "-f"),
            0);
}

TEST_F(TmuxOperationsTest, ADeadPaneIsNotBusy) {
  processes_.states.clear();
  answers({paneAnswer(pane_)});
  EXPECT_TRUE(operations().listSessions(deadline_).front().busy);
  pane_.dead = true;
  answers({paneAnswer(pane_)});
  EXPECT_FALSE(operations().listSessions(deadline_).front().busy);
}

TEST_F(TmuxOperationsTest, StatusCountsWindows) {
  answers({paneAnswer(samplePane(1, 1)) + paneLine(samplePane(2, 1)) + paneLine(samplePane(3, 2))});
  EXPECT_EQ(operations().status(deadline_), (TerminalRuntimeStatus{true, 2, AutomationPermission::granted}));
  tmux_.answers = {failed("no server running on /x\n")};
  EXPECT_EQ(operations().status(deadline_), (TerminalRuntimeStatus{false, 0, AutomationPermission::unknown}));
  tmux_.answers = {failed("no current target\n")};
  EXPECT_EQ(operations().status(deadline_), (TerminalRuntimeStatus{true, 0, AutomationPermission::granted}));
  tmux_.answers = {{.end = TmuxAnswer::End::timedOut}};
  EXPECT_EQ(structuredError([&] { operations().status(deadline_); }).code, ErrorCode::terminalNotAvailable);
}

TEST_F(TmuxOperationsTest, LooksTwiceWhenTheServerIsLost) {
  tmux_.answers = {failed("server exited unexpectedly\n"), failed("no server running on /x\n")};
  EXPECT_EQ(structuredError([&] { operations().listSessions(deadline_); }).code,
            ErrorCode::terminalNotRunning);
  tmux_.answers = {failed("lost server\n"), {.output = paneAnswer(pane_)}};
  EXPECT_EQ(operations().listSessions(deadline_).size(), 1u);
}

TEST_F(TmuxOperationsTest, RefusesAServerThatIsTooOld) {
  pane_.version = "3.1c";
  answers({paneAnswer(pane_)});
  const auto error = structuredError([&] { operations().listSessions(deadline_); });
  EXPECT_EQ(error.message, "tmux 3.1c is too old; Velmora needs 3.2 or newer.");
  EXPECT_FALSE(error.retryable);
}

TEST_F(TmuxOperationsTest, SendsInOneInvocationToThePaneThatWasListed) {
  listed();
  answers({""});
  send();
  ASSERT_EQ(tmux_.invocations.size(), 1u);
  EXPECT_EQ(tmux_.invocations[0].standardInput, "ls");
  EXPECT_EQ(tmux_.invocations[0].deadline, deadline_);
}

TEST_F(TmuxOperationsTest, ALineOfExactlyTheLimitPasses) {
  processes_.states[pane_.process].name = "dash";
  processes_.modes[pane_.tty] = {.collectsLines = true};
  const auto tab = listed();
  answers({""});
  operations().sendCommand("first\n1234567890", tab, false, deadline_);
  EXPECT_EQ(tmux_.invocations.size(), 1u);
  EXPECT_EQ(structuredError([&] { operations().sendCommand("12345678901", tab, false, deadline_); }).code,
            ErrorCode::invalidArgument);
  EXPECT_EQ(tmux_.invocations.size(), 1u);
}

TEST_F(TmuxOperationsTest, NeverNamesABufferTwice) {
  std::vector<std::string> names;
  listed();
  answers({""});
  for (int i = 0; i < 3; ++i) {
    send();
    names.push_back(tmux_.invocations.back().arguments[2]);
  }
  EXPECT_NE(names[0], names[1]);
  EXPECT_NE(names[1], names[2]);
}

TEST_F(TmuxOperationsTest, AnAddressThatNoListingGaveIsStaleAndNotAskedFor) {
  answers({""});
  EXPECT_EQ(structuredError([&] { send(); }).code, ErrorCode::sessionStale);
  EXPECT_TRUE(tmux_.invocations.empty());
  // A tty that may not stand in a format comes from no tmux.
  pane_.tty = "/dev/pts/3},1,#{pane_id";
  listed();
  EXPECT_EQ(structuredError([&] { send(); }).code, ErrorCode::sessionStale);
  EXPECT_TRUE(tmux_.invocations.empty());
}

TEST_F(TmuxOperationsTest, SendsNothingToAPaneThatIsNotAsItWas) {
  const PaneRow original = pane_;
  const auto refusedBeforeTyping = [&](const PaneRow& row) {
    listed(original);
    listed(row);
    const auto error = structuredError([&] { send(); });
    EXPECT_TRUE(tmux_.invocations.empty());
    return error.code;
  };
  PaneRow changed = original;
  changed.window = 9;
  EXPECT_EQ(refusedBeforeTyping(changed), ErrorCode::sessionStale);
  changed = original;
  changed.dead = true;
  EXPECT_EQ(refusedBeforeTyping(changed), ErrorCode::sessionStale);
  changed = original;
  changed.inputOff = true;
  EXPECT_EQ(refusedBeforeTyping(changed), ErrorCode::sessionNotAllowed);
}

TEST_F(TmuxOperationsTest, LooksAgainWhetherThePaneIsBusy) {
  listed();
  processes_.states[pane_.process].foregroundGroup = 1;
  EXPECT_EQ(structuredError([&] { send(); }).code, ErrorCode::sessionBusy);
  EXPECT_TRUE(tmux_.invocations.empty());
  answers({""});
  send(/*allowBusy=*/true);
  EXPECT_EQ(tmux_.invocations.size(), 1u);
}

TEST_F(TmuxOperationsTest, AShellThatIsOnTheProcessorForAMomentIsNotBusy) {
  processes_.modes[pane_.tty] = {.collectsLines = true};
  ProcessState& shell = processes_.states[pane_.process];
  shell.name = "sh";
  shell.running = true;
  meanwhile_ = [&] { shell.running = false; };
  answers({paneAnswer(pane_)});
  EXPECT_FALSE(operations().listSessions(deadline_).front().busy);
  EXPECT_EQ(slept_, std::chrono::milliseconds(20));
  shell.running = true;
  answers({""});
  EXPECT_NO_THROW(send());
}

TEST_F(TmuxOperationsTest, AShellThatStaysOnTheProcessorIsBusy) {
  const PaneRow other = samplePane(1, 1);
  for (const PaneRow& pane : {pane_, other}) {
    idle(pane);
    processes_.modes[pane.tty] = {.collectsLines = true};
    processes_.states[pane.process].name = "sh";
    processes_.states[pane.process].running = true;
  }
  answers({serverLine(pane_) + paneLine(other) + paneLine(pane_)});
  for (const auto& tab : operations().listSessions(deadline_)) EXPECT_TRUE(tab.busy);
  EXPECT_EQ(slept_, std::chrono::milliseconds(20)) << "one pause for both";
  tmux_.invocations.clear();
  EXPECT_EQ(structuredError([&] { send(); }).code, ErrorCode::sessionBusy);
  EXPECT_TRUE(tmux_.invocations.empty());
}

TEST_F(TmuxOperationsTest, AfterItsDeadlineNothingIsBegun) {
  const auto tab = listed();
  const auto late = std::chrono::steady_clock::now();
  for (const auto& call : std::vector<std::function<void()>>{
           [&] { operations().status(late); }, [&] { operations().listSessions(late); },
           [&] { operations().createWindow(late); }, [&] { operations().sendCommand("ls", tab, true, late); },
           [&] { operations().sendKey(TerminalKey::tab, 1, tab, true, late); },
           [&] { operations().readOutput(OutputSource::visible, 9, tab, late); },
           [&] { operations().captureScreen(tab, late); }, [&] { operations().focus(tab, late); }}) {
    const auto error = structuredError(call);
    EXPECT_EQ(error.message, "tmux did not answer in time.") << "and nothing of an unknown outcome";
    EXPECT_TRUE(error.retryable);
  }
  EXPECT_TRUE(tmux_.invocations.empty());
}

TEST_F(TmuxOperationsTest, TheGuardsRefusalIsStale) {
  const auto tab = listed();
  answers({"STALE\n"});
  EXPECT_EQ(structuredError([&] { send(); }).code, ErrorCode::sessionStale);
  EXPECT_EQ(structuredError([&] { operations().sendKey(TerminalKey::tab, 1, tab, false, deadline_); }).code,
            ErrorCode::sessionStale);
  EXPECT_EQ(structuredError([&] { operations().readOutput(OutputSource::visible, 9, tab, deadline_); }).code,
            ErrorCode::sessionStale);
}

TEST_F(TmuxOperationsTest, ALostServerWhileTypingLeavesTheOutcomeUnknown) {
  listed();
  tmux_.answers = {failed("server exited unexpectedly\n")};
  const auto error = structuredError([&] { send(); });
  EXPECT_EQ(error.code, ErrorCode::appleScriptExecutionFailed);
  EXPECT_FALSE(error.retryable);
}

TEST_F(TmuxOperationsTest, ReadsInOneInvocationWithALimitOfItsOwn) {
  const auto tab = listed();
  answers({"PANE\none  \ntwo\n\n"});
  const TerminalOutput output = operations().readOutput(OutputSource::history, 3, tab, deadline_);
  EXPECT_EQ(output,
            (TerminalOutput{.text = "two", .source = OutputSource::history, .originalCharacterCount = 7}));
  ASSERT_EQ(tmux_.invocations.size(), 1u);
  EXPECT_EQ(tmux_.invocations[0].deadline, deadline_);
  EXPECT_EQ(tmux_.invocations[0].outputLimit, std::size_t{256} << 20);
}

TEST_F(TmuxOperationsTest, CreatesAgainOnceWhenTheFormerServerWasEnding) {
  tmux_.answers = {{},
                   failed("server exited unexpectedly\n"),
                   {.output = "%3\t3.3a\noff\n"},
                   {.output = paneAnswer(pane_)}};
  EXPECT_EQ(operations().createWindow(deadline_).tty, pane_.tty);
  EXPECT_EQ(slept_, std::chrono::milliseconds(300));
  tmux_.answers = {failed("server exited unexpectedly\n")};
  EXPECT_EQ(structuredError([&] { operations().createWindow(deadline_); }).retryable, false);
}

TEST_F(TmuxOperationsTest, AServerThatHangsIsNotAskedToCreateAnything) {
  tmux_.answers = {{.end = TmuxAnswer::End::timedOut}, {.output = "%3\t3.3a\noff\n"}};
  const auto error = structuredError([&] { operations().createWindow(deadline_); });
  EXPECT_EQ(error.message, "tmux did not answer in time.");
  EXPECT_TRUE(error.retryable);
  EXPECT_EQ(tmux_.invocations.size(), 1u);
}

TEST_F(TmuxOperationsTest, WaitsForThePromptForTwoSecondsAtMost) {
  processes_.states[pane_.process].name = "tmux: server";
  answers({"", "%3\t3.3a\noff\n", paneAnswer(pane_)});
  EXPECT_TRUE(operations().createWindow(deadline_).busy);
  EXPECT_EQ(slept_, std::chrono::seconds(2));
}

TEST_F(TmuxOperationsTest, ANewWindowIsReadyWhenItsPromptIsDrawn) {
  PaneRow blank = pane_;
  blank.cursorColumn = 0;
  answers({"", "%3\t3.3a\noff\n", paneAnswer(blank), paneAnswer(blank), paneAnswer(pane_)});
  EXPECT_FALSE(operations().createWindow(deadline_).busy);
  EXPECT_EQ(slept_, std::chrono::milliseconds(40));
}

TEST_F(TmuxOperationsTest, AnEmptyPromptIsWaitedForOnlyAMoment) {
  pane_.cursorColumn = 0;
  answers({"", "%3\t3.3a\noff\n", paneAnswer(pane_)});
  EXPECT_FALSE(operations().createWindow(deadline_).busy);
  EXPECT_EQ(slept_, std::chrono::milliseconds(200));
}

TEST_F(TmuxOperationsTest, ACursorThatMovedWithoutAKeyIsLookedAtAgain) {
  listed();
  PaneRow drawn = pane_;
  drawn.cursorColumn = 12;
  const std::string line = "\t12\t0\t0\t120\nann@desk:~$ \nann@desk:~$ ";
  answers({std::string(guardTyped), paneAnswer(drawn), std::string(guardPassed) + line, ""});
  EXPECT_NO_THROW(send());
  EXPECT_EQ(tmux_.invocations.size(), 4u) << "typed into, listed, looked at, typed into";
  EXPECT_EQ(slept_, std::chrono::milliseconds(20));
}

TEST_F(TmuxOperationsTest, ACursorThatNeverRestsIsSomeoneTyping) {
  listed();
  // Every look finds the cursor elsewhere than the listing before it.
  tmux_.composing = [&] {
    PaneRow moved = pane_;
    moved.cursorColumn = static_cast<std::int64_t>(3 + tmux_.invocations.size());
    const auto& words = tmux_.invocations.back().arguments;
    const bool lists = std::find(words.begin(), words.end(), "list-panes") != words.end();
    const bool looks = words.front() == "display-message";
    tmux_.answers = {{.output = lists   ? paneAnswer(moved)
                                : looks ? std::string(guardPassed) + "\t99\t0\t0\t120\n$ \n$ "
                                        : std::string(guardTyped)}};
  };
  const auto error = structuredError([&] { send(); });
  EXPECT_EQ(error.message, "Someone is typing in this session.");
  EXPECT_TRUE(error.retryable);
  EXPECT_EQ(slept_, std::chrono::milliseconds(80));
}

TEST_F(TmuxOperationsTest, AKeyOfTheUserIsNotLookedAtAgain) {
  listed();
  const auto key = static_cast<std::int64_t>(Date::now().unixSeconds());
  answers({std::string(guardTyped),
           paneAnswer(pane_) + clientLine({.activity = key, .created = key - 60, .pane = pane_.pane})});
  EXPECT_EQ(structuredError([&] { send(); }).message, "Someone is typing in this session.");
  EXPECT_EQ(tmux_.invocations.size(), 2u);
}

TEST_F(TmuxOperationsTest, AServerThatHangsAfterCreatingIsNotAskedForAnotherSession) {
  tmux_.answers = {{}, {.output = "%3\t3.3a\noff\n"}, {.end = TmuxAnswer::End::timedOut}};
  const auto error = structuredError([&] { operations().createWindow(deadline_); });
  EXPECT_EQ(error.code, ErrorCode::terminalNotAvailable);
  EXPECT_FALSE(error.retryable);
  EXPECT_NE(error.recoverySuggestion.find("List the sessions"), std::string::npos);
}

TEST_F(TmuxOperationsTest, AnAnswerToCreatingThatIsNoRowIsAnError) {
  for (const std::string output :
       {"", "text", "text\n", "\n", "%3\n", "%\t3.3a\n", "%3x\t3.3a\n", "@3\t3.3a\n"}) {
    answers({output});
    EXPECT_EQ(structuredError([&] { operations().createWindow(deadline_); }).code,
              ErrorCode::appleScriptExecutionFailed);
  }
}

TEST_F(TmuxOperationsTest, AScreenThatCannotBeUnderstoodIsAnError) {
  for (const std::string output : {"PANE", "PANE\n", "PANE\t1\t2\t3\t4\nx", "PANE\t1\t2\tx\t4\t5\n"}) {
    const auto tab = listed();
    answers({output});
    EXPECT_EQ(structuredError([&] { operations().captureScreen(tab, deadline_); }).code,
              ErrorCode::appleScriptExecutionFailed)
        << output;
  }
}

TEST_F(TmuxOperationsTest, APictureThatCannotBeDrawnIsAnError) {
  const testing::LogLines log;
  options_.log = log.log();
  parts_.drawPicture = [](const PaneScreen&) -> std::string { throw std::runtime_error("no memory"); };
  const auto tab = listed();
  answers({"PANE\t80\t24\t0\t0\t1\ntext\n"});
  const auto error = structuredError([&] { operations().captureScreen(tab, deadline_); });
  EXPECT_EQ(error.code, ErrorCode::screenCaptureUnavailable);
  EXPECT_NE(error.message.find("no memory"), std::string::npos);
  EXPECT_EQ(log.count("error terminal: no picture: no memory"), 1u);
}

TEST_F(TmuxOperationsTest, FocusWithoutAScreenSelectsAndIsContent) {
  const auto tab = listed();
  answers({paneAnswer(pane_), ""});
  operations().focus(tab, deadline_);
  EXPECT_EQ(tmux_.invocations[1].arguments,
            (std::vector<std::string>{"select-window", "-t", "$0:@2", ";", "select-pane", "-t", "%3"}));
  EXPECT_EQ(desktop_.opened,
            (std::vector<std::vector<std::string>>{
                {"/opt/tmux", "-u", "-S", "/nowhere/socket", "attach-session", "-t", "%3"}}));
}

TEST_F(TmuxOperationsTest, FocusWaitsForTheTerminalThatItOpened) {
  desktop_.opens = true;
  const auto tab = listed();
  answers({paneAnswer(pane_), "", paneAnswer(pane_),
           paneAnswer(pane_) +
               clientLine({.activity = 1, .created = 1, .session = 0, .window = 2, .name = "c"})});
  operations().focus(tab, deadline_);
  EXPECT_EQ(slept_, std::chrono::milliseconds(20));
  answers({paneAnswer(pane_), "", paneAnswer(pane_)});
  EXPECT_EQ(structuredError([&] { operations().focus(tab, deadline_); }).code,
            ErrorCode::terminalNotAvailable);
}

TEST_F(TmuxOperationsTest, LooksAtTheShellsOfTheLastListingWhileTmuxComposesTheNext) {
  listed();
  int composed = 0;
  tmux_.composing = [&] {
    ++composed;
    processes_.states[pane_.process].foregroundGroup = 1;
  };
  EXPECT_FALSE(operations().listSessions(deadline_).front().busy) << "as it was when tmux was asked";
  EXPECT_EQ(composed, 1);
  EXPECT_TRUE(operations().listSessions(deadline_).front().busy) << "each listing looks for itself";
}

TEST_F(TmuxOperationsTest, AWaitEndsWithTheShellAndNotWithALookThatFails) {
  pane_.tty = "/nowhere/terminal";
  idle(pane_);
  const TabAddress tab = listed();
  answers({std::string(guardPassed) + "\t2\t0\t0\t2000\n$ \n"});
  const auto watch = operations().watch("ls", tab, deadline_);
  EXPECT_EQ(watch->glance(), TabWatch::Activity::quiet);
  processes_.states.clear();
  processes_.unseen = {pane_.process};
  EXPECT_EQ(watch->glance(), TabWatch::Activity::busy);
  processes_.unseen.clear();
  EXPECT_EQ(watch->glance(), TabWatch::Activity::closed);
}

TEST_F(TmuxOperationsTest, AContainedWindowStartsWhatContainsItAndNoIntegration) {
  parts_.containedCommand = [](auto) { return std::vector<std::string>{"bwrap", "shell"}; };
  operations().useSettings({.containNewWindows = true});
  answers({"", "%3\t3.3a\toff\n", paneAnswer(pane_)});
  EXPECT_EQ(operations().createWindow(deadline_).tty, pane_.tty);
  const auto& arguments = tmux_.invocations[1].arguments;
  EXPECT_EQ(arguments.front(), "new-session");
  const auto end = std::find(arguments.begin(), arguments.end(), ";");
  ASSERT_GT(end - arguments.begin(), 3);
  EXPECT_EQ(std::vector(end - 2, end), (std::vector<std::string>{"bwrap", "shell"}));
}

TEST_F(TmuxOperationsTest, NoWindowIsOpenedThatCannotBeContained) {
  parts_.containedCommand = [](auto) -> std::vector<std::string> { throw tmuxError::cannotContain("no"); };
  operations().useSettings({.containNewWindows = true});
  const auto error = structuredError([&] { operations().createWindow(deadline_); });
  EXPECT_EQ(error.message, "New windows are to be contained, and this one could not be: no.");
  EXPECT_TRUE(tmux_.invocations.empty());
}

TEST_F(TmuxOperationsTest, MakesTheFolderOfTheShellsRecordsWithTheSettingsAndForNoWatch) {
  const auto folder = directory_ / shellRecordFolder;
  const TabAddress tab = listed();
  operations().useSettings({});
  EXPECT_TRUE(std::filesystem::is_directory(folder));
  std::filesystem::remove_all(folder);
  answers({std::string(guardPassed) + "\t2\t0\t0\t2000\n$ \n"});
  operations().watch("ls", tab, deadline_);
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(TmuxOperationsTest, AMarkThatTmuxDidNotTakeInTimeIsSetAgain) {
  listed();
  const TerminalMarks marks{.tabs = {{pane_.tty, {.permission = SessionPermission::readOnly}}}};
  tmux_.answers = {{.end = TmuxAnswer::End::timedOut}};
  EXPECT_EQ(structuredError([&] { operations().mark(marks, deadline_); }).code,
            ErrorCode::terminalNotAvailable);
  tmux_.answers = {{}};
  operations().mark(marks, deadline_);
  ASSERT_EQ(tmux_.invocations.size(), 2u);
  EXPECT_EQ(tmux_.invocations.back().arguments, tmux_.invocations.front().arguments);
  operations().mark(marks, deadline_);
  EXPECT_EQ(tmux_.invocations.size(), 2u) << "it is set";
}

}  // namespace
}  // namespace velmora
