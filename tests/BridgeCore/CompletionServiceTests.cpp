#include <deque>

#include "BridgeCore/Completion.h"
#include "tests/support/CoreFixture.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using Activity = TabWatch::Activity;

// Tells what the test says, and its last word for ever.
class ScriptedWatch final : public TabWatch {
 public:
  std::deque<Activity> activities{Activity::quiet};
  std::deque<View> views{{.taken = true}};
  int looks = 0;

  Activity glance() override { return next(activities); }
  View look(std::int64_t, bool, std::chrono::steady_clock::time_point) override {
    ++looks;
    return next(views);
  }

 private:
  template <class Script>
  static typename Script::value_type next(Script& script) {
    auto first = script.front();
    if (script.size() > 1) script.pop_front();
    return first;
  }
};

class CompletionServiceTest : public testing::CoreFixture {
 protected:
  CommandCompletion wait(std::int64_t seconds = 10, const Caller& caller = {}) {
    return service.wait(watch, {.sessionId = id, .command = "ls", .waitSeconds = seconds}, caller);
  }

  const Uuid id = registerTab();
  std::shared_ptr<ScriptedWatch> watch = std::make_shared<ScriptedWatch>();
  std::chrono::steady_clock::time_point clock = std::chrono::steady_clock::now();
  CompletionService service{terminal,
                            sessions,
                            permissions,
                            {.now = [this] { return clock; },
                             .sleep = [this](std::chrono::milliseconds pause) { clock += pause; }}};
};

TEST_F(CompletionServiceTest, IsFinishedWhenTheShellHasTakenTheInputAndIsQuietAgain) {
  watch->activities = {Activity::busy, Activity::busy, Activity::quiet};
  watch->views = {{.taken = true, .output = "out", .truncated = true}};
  const auto completion = wait();
  EXPECT_EQ(completion.state, CompletionState::finished);
  EXPECT_EQ(completion.evidence, CompletionEvidence::process);
  EXPECT_EQ(completion.output, "out");
  EXPECT_EQ(completion.outputTruncated, true);
  EXPECT_EQ(watch->looks, 1);
}

TEST_F(CompletionServiceTest, HasAnExitCodeWhenTheShellTellsItOfTheInput) {
  watch->views = {{.taken = true, .output = "", .truncated = false, .exitStatus = 130}};
  auto completion = wait();
  EXPECT_EQ(completion.evidence, CompletionEvidence::shellIntegration);
  EXPECT_EQ(completion.exitCode, 130);
  watch->views = {{.taken = true}};
  completion = wait();
  EXPECT_EQ(completion.evidence, CompletionEvidence::process);
  EXPECT_EQ(completion.exitCode, std::nullopt);
}

TEST_F(CompletionServiceTest, SaysNothingOfAnOutputThatIsWhole) {
  watch->views = {{.taken = true, .output = "out", .truncated = false}};
  const auto completion = wait();
  EXPECT_EQ(completion.output, "out");
  EXPECT_EQ(completion.outputTruncated, std::nullopt);
}

TEST_F(CompletionServiceTest, IsNotFinishedWhileTheInputIsNotTaken) {
  watch->views = {{.taken = false}};
  const auto completion = wait(5);
  EXPECT_EQ(completion.state, CompletionState::running);
  EXPECT_EQ(completion.evidence, CompletionEvidence::timeout);
  EXPECT_GE(completion.elapsedMilliseconds, 5000);
  EXPECT_LT(watch->looks, 15) << "the terminal is asked ever more seldom";
}

TEST_F(CompletionServiceTest, IsNotFinishedWhenTheTabTurnsBusyDuringTheLook) {
  watch->activities = {Activity::busy, Activity::quiet, Activity::quiet, Activity::busy, Activity::busy};
  EXPECT_EQ(wait(2).state, CompletionState::running);
}

TEST_F(CompletionServiceTest, AsksTheTerminalNothingWhileTheTabIsBusy) {
  watch->activities = {Activity::busy};
  EXPECT_EQ(wait(40).state, CompletionState::running);
  EXPECT_EQ(watch->looks, 1) << "for what appeared, at the end";
}

TEST_F(CompletionServiceTest, IsClosedWhenTheTabHasEnded) {
  watch->activities = {Activity::busy, Activity::closed};
  const auto completion = wait();
  EXPECT_EQ(completion.state, CompletionState::closed);
  EXPECT_EQ(completion.evidence, CompletionEvidence::process);
  EXPECT_EQ(completion.output, std::nullopt);
}

TEST_F(CompletionServiceTest, ShowsNothingOfASessionThatWasBlockedMeanwhile) {
  registry.setPermission(SessionPermission::blocked, id);
  const auto completion = wait();
  EXPECT_EQ(completion.state, CompletionState::finished);
  EXPECT_EQ(completion.output, std::nullopt);
}

TEST_F(CompletionServiceTest, TellsTheLastLineMeanwhile) {
  watch->activities = {Activity::busy};
  Caller caller;
  int told = 0;
  caller.hearLastLine = [&](const std::string& line) { told += line == "output" ? 1 : 0; };
  wait(10, caller);
  EXPECT_GE(told, 8);
  EXPECT_LE(told, 10);
}

TEST_F(CompletionServiceTest, EndsWhenTheCallerHasLeft) {
  watch->activities = {Activity::busy};
  Caller caller;
  caller.hasLeft = [looks = 0]() mutable { return ++looks > 3; };
  EXPECT_LT(wait(45, caller).elapsedMilliseconds, 1000);
}

TEST_F(CompletionServiceTest, UsesTheListingWhereATerminalHasNoWatch) {
  terminal.tabs[0].busy = true;
  const auto listing = service.watch("ls", registry.session(id), {});
  ASSERT_TRUE(listing);
  EXPECT_EQ(listing->glance(), Activity::busy);
  EXPECT_TRUE(listing->look(100, false, {}).taken);
}

TEST_F(CompletionServiceTest, AListingThatFailsEndsNoWaitForWhatWasDelivered) {
  const auto listing = service.watch("ls", registry.session(id), {});
  terminal.failWith("listTab", PlatformError("Velmora.AppleScript", platformErrorCode::timedOut));
  EXPECT_EQ(listing->glance(), Activity::quiet);
}

}  // namespace
}  // namespace velmora
