#include <gtest/gtest.h>

#include <deque>
#include <limits>

#include "TerminalAutomation/AppleScript/AppleScriptOperations.h"
#include "tests/TerminalAutomation/AppleScript/ScriptedHost.h"
#include "tests/support/FakeTime.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using testing::scriptFlag;
using testing::scriptList;
using testing::scriptNumber;
using testing::scriptRow;
using testing::scriptText;
using Calls = std::vector<testing::ScriptedHost::Call>;
using namespace std::string_literals;

class AppleScriptOperationsTest : public ::testing::Test {
 protected:
  void reply(const std::string& handler, ScriptReply reply) { script_.replies[handler] = std::move(reply); }

  /// The error that `work` ends with, as "domain code description".
  template <class Work>
  static std::string errorOf(Work work) {
    try {
      work();
    } catch (const PlatformError& error) {
      return error.domain() + " " + std::to_string(error.code()) + " " + error.what();
    }
    return "none";
  }

  /// What the window server says: the next of `looks_`, of which the last one stays.
  ScreenWindows look() {
    auto windows = looks_.front();
    if (looks_.size() > 1) looks_.pop_front();
    return windows;
  }

  TemporaryDirectory directory_;
  std::deque<ScreenWindows> looks_{{{.number = 41}}};
  testing::ScriptedHost::State script_;
  testing::ScriptedPrograms::State programs_;
  bool running_ = true;
  std::vector<std::string> asked_;
  std::vector<std::string> started_;
  int pauses_ = 0;
  AppleScriptParts parts() {
    return {.script = std::make_unique<testing::ScriptedHost>(script_),
            .isRunning =
                [this](const std::string& bundleIdentifier) {
                  asked_.push_back(bundleIdentifier);
                  return running_;
                },
            .start = [this](const std::string& bundleIdentifier) { started_.push_back(bundleIdentifier); },
            .screenWindows = [this] { return look(); },
            .programs = std::make_unique<testing::ScriptedPrograms>(programs_),
            .temporaryDirectory = directory_.path(),
            .uuid = testing::countingUuids(),
            .pause = [this](auto) { ++pauses_; }};
  }
  AppleScriptOperations operations_{parts(), "on run\nend run"};
  const AppleScriptOperations::Deadline deadline_ =
      std::chrono::steady_clock::now() + std::chrono::minutes(5);
};

TEST_F(AppleScriptOperationsTest, GivesTheSourceToTheHost) { EXPECT_EQ(script_.source, "on run\nend run"); }

TEST_F(AppleScriptOperationsTest, ASourceThatDoesNotCompileIsAGeneralScriptError) {
  script_.compiles = false;
  EXPECT_EQ(errorOf([&] { AppleScriptOperations(parts(), "on"); }),
            "Velmora.AppleScript -2700 Bundled Terminal AppleScript failed to compile.");
}

TEST_F(AppleScriptOperationsTest, StatusOfATerminalThatDoesNotRunTouchesNoScript) {
  running_ = false;
  EXPECT_EQ(operations_.status(deadline_),
            (TerminalRuntimeStatus{
                .running = false, .windowCount = 0, .permission = AutomationPermission::unknown}));
  EXPECT_EQ(script_.calls, Calls{});
  EXPECT_EQ(asked_, (std::vector{"com.apple.Terminal"s}));
}

TEST_F(AppleScriptOperationsTest, StatusThatAnswersProvesThePermission) {
  reply("bridgeStatus", scriptList({scriptFlag(true), scriptNumber(4)}));
  EXPECT_EQ(operations_.status(deadline_),
            (TerminalRuntimeStatus{
                .running = true, .windowCount = 4, .permission = AutomationPermission::granted}));
  reply("bridgeStatus", scriptList({scriptFlag(false), scriptNumber(0)}));
  EXPECT_FALSE(operations_.status(deadline_).running);
  EXPECT_EQ(script_.calls, (Calls{{"bridgeStatus", {}}, {"bridgeStatus", {}}}));
}

TEST_F(AppleScriptOperationsTest, AStatusWithoutItsFirstItemCountsAsRunning) {
  EXPECT_EQ(operations_.status(deadline_),
            (TerminalRuntimeStatus{
                .running = true, .windowCount = 0, .permission = AutomationPermission::granted}));
  reply("bridgeStatus", scriptList({{}}));
  EXPECT_FALSE(operations_.status(deadline_).running) << "an item that is there is read as it is";
}

TEST_F(AppleScriptOperationsTest, AFailedStatusKeepsItsNumber) {
  reply("bridgeStatus", ScriptFailure{-1743});
  EXPECT_EQ(errorOf([&] { operations_.status(deadline_); }),
            "Velmora.AppleScript -1743 Terminal AppleScript operation failed.");
}

TEST_F(AppleScriptOperationsTest, AUserWhoWasNeverAskedIsNotAskedByAStatus) {
  int found = 0;
  operations_.whenUndecided([&] { ++found; });
  script_.consents = {consentStatus::notAsked};
  const TerminalRuntimeStatus undecided{.running = true};
  EXPECT_EQ(operations_.status(deadline_), undecided);
  EXPECT_EQ(operations_.status(deadline_), undecided);
  EXPECT_EQ(script_.calls, Calls{}) << "an event would raise the system's question";
  EXPECT_EQ(script_.consentQuestions, (std::vector(2, "com.apple.Terminal"s)));
  EXPECT_EQ(found, 1);
}

TEST_F(AppleScriptOperationsTest, ARefusedConsentIsKnownWithoutTheScript) {
  script_.consents = {consentStatus::denied};
  const auto refusal = "Velmora.AppleScript -1743 Terminal AppleScript operation failed.";
  EXPECT_EQ(errorOf([&] { operations_.status(deadline_); }), refusal);
  EXPECT_EQ(errorOf([&] { operations_.listSessions(deadline_); }), refusal);
  EXPECT_EQ(script_.calls, Calls{});
}

TEST_F(AppleScriptOperationsTest, WithoutAnAnswerYetAnOperationIsRefusedAndTheUserAsked) {
  int found = 0;
  operations_.whenUndecided([&] { ++found; });
  script_.consents = {consentStatus::notAsked};
  EXPECT_EQ(errorOf([&] { operations_.listSessions(deadline_); }),
            "Velmora.AppleScript -1743 Terminal AppleScript operation failed.");
  EXPECT_EQ(script_.calls, Calls{});
  EXPECT_EQ(found, 1);
}

TEST_F(AppleScriptOperationsTest, OnceTerminalHasTakenAnEventTheSystemIsAskedNoMoreUntilARefusal) {
  operations_.status(deadline_);
  operations_.status(deadline_);
  operations_.focus({"t", 1}, deadline_);
  EXPECT_EQ(script_.consentQuestions.size(), 1u);
  reply("bridgeStatus", ScriptFailure{consentStatus::denied});
  EXPECT_NE(errorOf([&] { operations_.status(deadline_); }), "none");
  script_.consents = {consentStatus::denied};
  EXPECT_NE(errorOf([&] { operations_.focus({"t", 1}, deadline_); }), "none");
  EXPECT_EQ(script_.consentQuestions.size(), 2u);
}

TEST_F(AppleScriptOperationsTest, WhatTheSystemCannotSayIsLeftToTheScript) {
  for (const std::int64_t status : {consentStatus::notRunning, platformErrorCode::connectionInvalid}) {
    AppleScriptOperations operations(parts(), "source");
    script_.consents = {status};
    script_.calls.clear();
    EXPECT_EQ(operations.status(deadline_).permission, AutomationPermission::granted);
    EXPECT_EQ(script_.calls, (Calls{{"bridgeStatus", {}}})) << status;
  }
}

TEST_F(AppleScriptOperationsTest, TheUserIsAskedBeforeTheFirstEvent) {
  script_.duringCall = [&] { EXPECT_EQ(script_.consentQuestions.size(), script_.calls.size()); };
  operations_.requestTerminalAccess();
  operations_.requestSystemEventsAccess();
  EXPECT_EQ(script_.consentQuestions, (std::vector{"com.apple.Terminal?"s, "com.apple.systemevents?"s}));
  EXPECT_EQ(script_.calls, (Calls{{"bridgeStatus", {}}, {"systemEventsStatus", {}}}));
  EXPECT_EQ(started_, std::vector<std::string>{});
}

TEST_F(AppleScriptOperationsTest, AQuestionThatTheUserLetPassIsNotRaisedAgain) {
  script_.consents = {consentStatus::notAsked};
  int found = 0;
  operations_.whenUndecided([&] { ++found; });
  const auto passed = "Velmora.AppleScript -1744 Terminal AppleScript operation failed.";
  EXPECT_EQ(errorOf([&] { operations_.requestTerminalAccess(); }), passed);
  EXPECT_EQ(errorOf([&] { operations_.requestSystemEventsAccess(); }), passed);
  operations_.status(deadline_);
  EXPECT_EQ(found, 0);
  EXPECT_EQ(script_.calls, Calls{});
}

TEST_F(AppleScriptOperationsTest, WhoCouldNotBeAskedWithoutTerminalIsAskedOnceItRuns) {
  int found = 0;
  operations_.whenUndecided([&] { ++found; });
  script_.consents = {consentStatus::notRunning, consentStatus::notAsked};
  operations_.requestTerminalAccess();
  operations_.status(deadline_);
  EXPECT_EQ(found, 1);
}

TEST_F(AppleScriptOperationsTest, SystemEventsIsStartedForTheQuestion) {
  script_.consents = {consentStatus::notRunning, consentStatus::notRunning, consentStatus::granted};
  operations_.requestSystemEventsAccess();
  EXPECT_EQ(started_, (std::vector{"com.apple.systemevents"s}));
  EXPECT_EQ(pauses_, 2);
  EXPECT_EQ(script_.calls, (Calls{{"systemEventsStatus", {}}}));
}

TEST_F(AppleScriptOperationsTest, ASystemEventsThatNeverStartsHoldsNobodyUp) {
  script_.consents = {consentStatus::notRunning};
  operations_.requestSystemEventsAccess();
  EXPECT_EQ(started_.size(), 1u);
  EXPECT_EQ(pauses_, 50);
}

TEST_F(AppleScriptOperationsTest, AFailureWithoutANumberIsAGeneralScriptError) {
  reply("focusSession", ScriptFailure{});
  EXPECT_EQ(errorOf([&] {
              operations_.focus({"/dev/ttys001", 41}, deadline_);
            }),
            "Velmora.AppleScript -2700 Terminal AppleScript operation failed.");
}

TEST_F(AppleScriptOperationsTest, EveryOperationPassesTheScriptsNumberOn) {
  for (const auto* handler :
       {"bridgeStatus", "systemEventsStatus", "listSessions", "createWindow", "sendCommand", "sendKey",
        "readOutput", "captureBounds", "focusSession", "closeWindow"}) {
    reply(handler, ScriptFailure{-600});
  }
  const std::vector<std::function<void()>> works{
      [&] { operations_.status(deadline_); },
      [&] { operations_.requestTerminalAccess(); },
      [&] { operations_.requestSystemEventsAccess(); },
      [&] { operations_.listSessions(deadline_); },
      [&] { operations_.createWindow(deadline_); },
      [&] {
        operations_.sendCommand("ls", {"t", 1}, false, deadline_);
      },
      [&] {
        operations_.sendKey(TerminalKey::tab, 1, {"t", 1}, false, deadline_);
      },
      [&] {
        operations_.readOutput(OutputSource::visible, 1, {"t", 1}, deadline_);
      },
      [&] {
        operations_.captureScreen({"t", 41}, deadline_);
      },
      [&] {
        operations_.focus({"t", 1}, deadline_);
      },
      [&] { operations_.closeWindow(1); }};
  for (const auto& work : works) {
    EXPECT_EQ(errorOf(work), "Velmora.AppleScript -600 Terminal AppleScript operation failed.");
  }
}

TEST_F(AppleScriptOperationsTest, AListingDropsShortRowsAndKeepsTheOrder) {
  reply("listSessions",
        scriptList(
            {scriptRow("/dev/ttys002"), scriptRow("/dev/ttys009", 6), {}, scriptRow("/dev/ttys001", 8)}));
  const TerminalTabSnapshot first{.tty = "/dev/ttys002",
                                  .windowId = 41,
                                  .windowIndex = 2,
                                  .tabIndex = 3,
                                  .title = "제목",
                                  .busy = true,
                                  .selected = false};
  auto second = first;
  second.tty = "/dev/ttys001";
  EXPECT_EQ(operations_.listSessions(deadline_), (std::vector{first, second}));
  EXPECT_EQ(script_.calls, (Calls{{"listSessions", {}}}));
}

TEST_F(AppleScriptOperationsTest, AListingOfShortRowsAloneIsEmpty) {
  reply("listSessions", scriptList({{}}));
  EXPECT_EQ(operations_.listSessions(deadline_), std::vector<TerminalTabSnapshot>{});
}

TEST_F(AppleScriptOperationsTest, MissingItemsOfARowReadAsNothing) {
  reply("listSessions", scriptList({scriptList(std::vector<ScriptDescriptor>(7))}));
  EXPECT_EQ(operations_.listSessions(deadline_), std::vector{TerminalTabSnapshot{}});
}

TEST_F(AppleScriptOperationsTest, ACreatedWindowIsOneRow) {
  reply("createWindow", scriptRow("/dev/ttys004"));
  EXPECT_EQ(operations_.createWindow(deadline_).tty, "/dev/ttys004");
  reply("createWindow", scriptRow("/dev/ttys004", 6));
  EXPECT_EQ(errorOf([&] { operations_.createWindow(deadline_); }), "Velmora.AppleScript -1728 ");
}

TEST_F(AppleScriptOperationsTest, ArgumentsStandInTheOrderOfTheContract) {
  operations_.sendCommand("echo '안녕'", {"/dev/ttys001", 41}, true, deadline_);
  operations_.sendKey(TerminalKey::return_, 1, {"/dev/ttys001", 41}, false, deadline_);
  operations_.readOutput(OutputSource::history, 50'000, {"/dev/ttys001", 41}, deadline_);
  operations_.readOutput(OutputSource::visible, 1, {"/dev/ttys001", 41}, deadline_);
  operations_.focus({"/dev/ttys001", 41}, deadline_);
  operations_.closeWindow(41);
  operations_.requestTerminalAccess();
  operations_.requestSystemEventsAccess();
  const ScriptArgument tty = "/dev/ttys001"s;
  EXPECT_EQ(script_.calls, (Calls{{"sendCommand", {"echo '안녕'"s, tty, 41, true}},
                                  {"sendKey", {36, 0, tty, 41, false}},
                                  {"sendKey", {36, 1, tty, 41, true}},
                                  {"readOutput", {"history"s, 50'000, tty, 41}},
                                  {"readOutput", {"visible"s, 1, tty, 41}},
                                  {"focusSession", {tty, 41}},
                                  {"closeWindow", {41}},
                                  {"bridgeStatus", {}},
                                  {"systemEventsStatus", {}}}));
}

TEST_F(AppleScriptOperationsTest, AnOutputCarriesTheSourceThatWasAskedFor) {
  reply("readOutput", scriptList({scriptText("끝"), scriptNumber(12)}));
  EXPECT_EQ(operations_.readOutput(OutputSource::history, 1, {"t", 1}, deadline_),
            (TerminalOutput{.text = "끝", .source = OutputSource::history, .originalCharacterCount = 12}));
  EXPECT_EQ(operations_.readOutput(OutputSource::visible, 1, {"t", 1}, deadline_).source,
            OutputSource::visible);
}

TEST_F(AppleScriptOperationsTest, AnOutputIsNotCutHere) {
  reply("readOutput", scriptList({scriptText("abcdef"), scriptNumber(6)}));
  EXPECT_EQ(operations_.readOutput(OutputSource::visible, 2, {"t", 1}, deadline_).text, "abcdef");
}

TEST_F(AppleScriptOperationsTest, AnOutputWithoutItsItemsIsEmpty) {
  EXPECT_EQ(operations_.readOutput(OutputSource::visible, 1, {"t", 1}, deadline_), TerminalOutput{});
}

TEST_F(AppleScriptOperationsTest, ACaptureTakesTheBoundsThatTheScriptSays) {
  reply("captureBounds",
        scriptList({scriptNumber(-100), scriptNumber(25), scriptNumber(700), scriptNumber(525)}));
  const auto path = directory_ / "Velmora/terminal-00000000-0000-0000-0000-000000000001.png";
  EXPECT_EQ(operations_.captureScreen({"/dev/ttys001", 41}, deadline_).imagePath, path.string());
  EXPECT_EQ(script_.calls, (Calls{{"captureBounds", {"/dev/ttys001"s, 41}}}));
  EXPECT_EQ(programs_.runs, (std::vector<std::vector<std::string>>{
                                {"/usr/sbin/screencapture", "-x", "-R", "-100,25,800,500", path.string()}}));
}

TEST_F(AppleScriptOperationsTest, BoundsOfThreeItemsStartNoTool) {
  reply("captureBounds", scriptList({scriptNumber(1), scriptNumber(2), scriptNumber(3)}));
  EXPECT_EQ(errorOf([&] {
              operations_.captureScreen({"t", 41}, deadline_);
            }),
            "Velmora.ScreenCapture -1728 ");
  EXPECT_TRUE(programs_.runs.empty());
}

TEST_F(AppleScriptOperationsTest, ATabThatIsNotOnTheScreenHasNoPicture) {
  reply("captureBounds", scriptList(std::vector<ScriptDescriptor>(4)));
  looks_ = {{{.number = 42}}};
  const auto refusal = "Velmora.AppleScript 1013 The tab is not on the screen.";
  EXPECT_EQ(errorOf([&] { operations_.captureScreen({"t", 41}, deadline_); }), refusal);
  EXPECT_TRUE(programs_.runs.empty());
}

TEST_F(AppleScriptOperationsTest, APictureThatMayShowAnotherTabIsThrownAway) {
  reply("captureBounds", scriptList(std::vector<ScriptDescriptor>(4)));
  looks_ = {{{.number = 41}}, {{.number = 42}}};
  const auto refusal = "Velmora.AppleScript 1013 The tab is not on the screen.";
  EXPECT_EQ(errorOf([&] { operations_.captureScreen({"t", 41}, deadline_); }), refusal);
  ASSERT_EQ(programs_.runs.size(), 1u);
  EXPECT_FALSE(std::filesystem::exists(programs_.runs[0].back()));
}

TEST_F(AppleScriptOperationsTest, AWindowThatOthersCoverHasAPicture) {
  reply("captureBounds", scriptList(std::vector<ScriptDescriptor>(4)));
  looks_ = {{{.number = 42}, {.number = 41}}};
  EXPECT_NE(operations_.captureScreen({"t", 41}, deadline_).imagePath, "");
}

TEST_F(AppleScriptOperationsTest, AKeyIsPressedOnlyInTheWindowThatIsInFront) {
  looks_ = {{{.number = 42}, {.number = 41}}};
  const auto refusal = "Velmora.AppleScript 1012 Another window is in front.";
  const auto press = [&] { operations_.sendKey(TerminalKey::tab, 3, {"t"s, 41}, false, deadline_); };
  EXPECT_EQ(errorOf(press), refusal);
  const testing::ScriptedHost::Call bring{"sendKey", {48, 0, "t"s, 41, false}};
  EXPECT_EQ(script_.calls, (Calls{bring, bring})) << "it was asked for twice, and no key was pressed";
}

TEST_F(AppleScriptOperationsTest, AWindowThatComesAtTheSecondRequestGetsItsKeys) {
  looks_ = {{{.number = 42}}, {{.number = 41}}};
  operations_.sendKey(TerminalKey::tab, 2, {"t", 41}, true, deadline_);
  const testing::ScriptedHost::Call bring{"sendKey", {48, 0, "t"s, 41, true}};
  const testing::ScriptedHost::Call once{"sendKey", {48, 1, "t"s, 41, true}};
  EXPECT_EQ(script_.calls, (Calls{bring, bring, once, once}));
}

TEST_F(AppleScriptOperationsTest, AnotherWindowThatComesToTheFrontStopsTheKeys) {
  const ScreenWindows ours{{.number = 41}};
  looks_ = {ours, ours, ours, {{.number = 42}, {.number = 41}}};
  EXPECT_EQ(errorOf([&] {
              operations_.sendKey(TerminalKey::downArrow, 50, {"t", 41}, false, deadline_);
            }),
            "Velmora.AppleScript 1012 Another window is in front.");
  const testing::ScriptedHost::Call once{"sendKey", {125, 1, "t"s, 41, true}};
  EXPECT_EQ(script_.calls, (Calls{{"sendKey", {125, 0, "t"s, 41, false}}, once, once}));
}

TEST_F(AppleScriptOperationsTest, TheWholeRangeOf32BitsReachesTheScript) {
  using Limits = std::numeric_limits<std::int32_t>;
  operations_.closeWindow(Limits::max());
  operations_.closeWindow(Limits::min());
  EXPECT_EQ(script_.calls, (Calls{{"closeWindow", {Limits::max()}}, {"closeWindow", {Limits::min()}}}));
}

TEST_F(AppleScriptOperationsTest, TheToolThatTakesThePictureHasTheSameDeadline) {
  reply("captureBounds", scriptList(std::vector<ScriptDescriptor>(4)));
  operations_.captureScreen({"/dev/ttys001", 41}, deadline_);
  EXPECT_EQ(programs_.deadline, deadline_);
}

TEST_F(AppleScriptOperationsTest, AfterItsDeadlineACallDoesNotReachTheScript) {
  EXPECT_EQ(errorOf([&] {
              operations_.focus({"t", 1}, std::chrono::steady_clock::now());
            }),
            "Velmora.Automation -1712 Terminal.app did not answer in time.");
  EXPECT_EQ(script_.calls, Calls{});
}

using AppleScriptOperationsDeathTest = AppleScriptOperationsTest;

TEST_F(AppleScriptOperationsDeathTest, AnIntegerOfMoreThan32BitsStopsTheProcess) {
  const auto tooLarge = std::int64_t{1} << 31;
  const auto reason = "more than 32 bits";
  EXPECT_DEATH(operations_.closeWindow(tooLarge), reason);
  EXPECT_DEATH(operations_.closeWindow(-tooLarge - 1), reason);
  EXPECT_DEATH(operations_.sendCommand("ls", {"t", tooLarge}, true, deadline_), reason);
  EXPECT_DEATH(operations_.sendKey(TerminalKey::tab, tooLarge, {"t", 1}, true, deadline_), reason);
  EXPECT_DEATH(operations_.readOutput(OutputSource::visible, tooLarge, {"t", 1}, deadline_), reason);
}

TEST_F(AppleScriptOperationsDeathTest, AnEmptyListingStopsTheProcess) {
  EXPECT_DEATH(operations_.listSessions(deadline_), "listed nothing");
}

}  // namespace
}  // namespace velmora
