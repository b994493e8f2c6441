#include <algorithm>
#include <deque>
#include <optional>

#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeCore/OutputWait.h"
#include "BridgeCore/Reading.h"
#include "tests/support/CoreFixture.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using Activity = TabWatch::Activity;
using testing::structuredError;

// Tells what the test says, and its last word for ever.
class ScriptedGlances final : public TabWatch {
 public:
  std::deque<Activity> activities{Activity::quiet};

  Activity glance() override {
    const auto first = activities.front();
    if (activities.size() > 1) activities.pop_front();
    return first;
  }
  View look(std::int64_t, bool, std::chrono::steady_clock::time_point) override { return {}; }
};

class OutputWaitTest : public testing::CoreFixture {
 protected:
  OutputWaitTest() { terminal.tabWatch = watch; }

  bool wait(ReadOutputInput input, const Caller& caller = {}) {
    input.sessionId = id;
    return service.wait(input, registry.session(id), caller);
  }
  void showAfterSleeps(int sleeps, const std::string& text) {
    atSleep = [this, sleeps, text, seen = 0]() mutable {
      if (++seen == sleeps) terminal.output.text = text;
    };
  }

  const Uuid id = registerTab();
  std::shared_ptr<ScriptedGlances> watch = std::make_shared<ScriptedGlances>();
  std::function<void()> atSleep = [] {};
  std::chrono::steady_clock::time_point clock = std::chrono::steady_clock::now();
  const std::chrono::steady_clock::time_point begun = clock;
  OutputWait service{terminal,
                     sessions,
                     permissions,
                     {.now = [this] { return clock; },
                      .sleep =
                          [this](std::chrono::milliseconds pause) {
                            clock += pause;
                            atSleep();
                          }}};
};

TEST_F(OutputWaitTest, IsMetWhenTheSessionIsIdle) {
  watch->activities = {Activity::busy, Activity::quiet, Activity::busy, Activity::quiet};
  EXPECT_TRUE(wait({.waitSeconds = 10}));
  EXPECT_LT(clock - begun, 1s);
}

TEST_F(OutputWaitTest, IsNotMetBeforeWhatWasJustTypedHasReachedTheShell) {
  watch->activities = {Activity::quiet, Activity::quiet, Activity::quiet, Activity::busy};
  EXPECT_FALSE(wait({.waitSeconds = 10}));
}

TEST_F(OutputWaitTest, WaitsForIdleWithoutAskingTheTerminal) {
  watch->activities = {Activity::busy};
  const auto before = terminal.calls().size();
  EXPECT_FALSE(wait({.waitSeconds = 45, .until = ReadUntil::idle}));
  EXPECT_EQ(terminal.calls().size(), before + 1) << "to begin the watch";
  EXPECT_GE(clock - begun, 45s);
}

TEST_F(OutputWaitTest, ASessionThatEndsIsNotIdle) {
  watch->activities = {Activity::busy, Activity::closed};
  EXPECT_FALSE(wait({.waitSeconds = 45}));
  EXPECT_LT(clock - begun, 1s);
}

TEST_F(OutputWaitTest, ComparesWithTheScreenAtTheBeginning) {
  showAfterSleeps(20, "another");
  EXPECT_TRUE(wait({.waitSeconds = 10, .until = ReadUntil::change}));
  EXPECT_GE(clock - begun, 1s);
  EXPECT_LT(clock - begun, 2s);
}

TEST_F(OutputWaitTest, IsMetWhenTheTextIsThere) {
  EXPECT_TRUE(wait({.waitSeconds = 10, .until = ReadUntil::text, .waitText = "utpu"}));
  EXPECT_EQ(clock, begun) << "at once, when it is there already";
  showAfterSleeps(20, "one\nPassword: \n");
  EXPECT_TRUE(wait({.waitSeconds = 10, .until = ReadUntil::text, .waitText = "Password:"}));
  EXPECT_GE(clock - begun, 1s);
}

TEST_F(OutputWaitTest, LooksAtMostFourTimesASecond) {
  for (const auto until : {ReadUntil::change, ReadUntil::text}) {
    const auto before = terminal.callCount("readOutput");
    const auto text = until == ReadUntil::text ? std::optional<std::string>("never") : std::nullopt;
    EXPECT_FALSE(wait({.waitSeconds = 10, .until = until, .waitText = text}));
    EXPECT_LE(terminal.callCount("readOutput") - before, 42u);
    EXPECT_GE(terminal.callCount("readOutput") - before, 38u);
  }
}

TEST_F(OutputWaitTest, LooksLessOftenWhereALookTakesLong) {
  OutputWait slow(terminal, sessions, permissions,
                  {.now = [this] { return clock + terminal.callCount("readOutput") * 1s; },
                   .sleep = [this](std::chrono::milliseconds pause) { clock += pause; }});
  for (const auto until : {ReadUntil::change, ReadUntil::text}) {
    const auto before = terminal.callCount("readOutput");
    const auto text = until == ReadUntil::text ? std::optional<std::string>("never") : std::nullopt;
    EXPECT_FALSE(slow.wait({.sessionId = id, .waitSeconds = 20, .until = until, .waitText = text},
                           registry.session(id), {.since = clock + before * 1s}));
    EXPECT_LE(terminal.callCount("readOutput") - before, 6u);
    EXPECT_GE(terminal.callCount("readOutput") - before, 3u);
  }
}

TEST_F(OutputWaitTest, AWaitForATextGoesOnFromWhereItWasAndSearchesAllThatIsNew) {
  const auto asked = [&](const std::string& after) {
    return std::ranges::count(terminal.calls(),
                              "readOutput(visible, 1000000, /dev/ttys001, 11" + after + ")");
  };
  EXPECT_FALSE(wait({.waitSeconds = 1, .until = ReadUntil::text, .waitText = "never", .after = "c1"}));
  EXPECT_GE(asked(", after c1"), 4) << "a screen without a place to go on from must not lose the last one";
  EXPECT_EQ(asked(""), 0);
  terminal.found.cursor = "c2";
  EXPECT_FALSE(wait({.waitSeconds = 1, .until = ReadUntil::text, .waitText = "never", .after = "c1"}));
  EXPECT_GE(asked(", after c2"), 3);
}

TEST_F(OutputWaitTest, ABlockedSessionEndsTheWaitAsABlockedReadEnds) {
  watch->activities = {Activity::busy};
  atSleep = [this] { registry.setPermission(SessionPermission::blocked, id); };
  for (const auto until : {ReadUntil::idle, ReadUntil::change, ReadUntil::text}) {
    registry.setPermission(SessionPermission::managed, id);
    const auto start = clock;
    EXPECT_EQ(structuredError([&] { wait({.waitSeconds = 45, .until = until, .waitText = "never"}); }),
              catalogue::sessionNotAllowed("terminal_read_output", registry.session(id).reference()));
    EXPECT_LT(clock - start, 1s);
  }
}

TEST_F(OutputWaitTest, AUserWhoBeginsToWatchThereEndsTheWaitAsWell) {
  WatchedTerminals watched;
  const SessionPermissionService asked(registry, nullptr, &watched);
  std::optional<WatchedTerminals::Hold> hold;
  const auto begins = [&](std::chrono::milliseconds pause) {
    clock += pause;
    if (!hold) hold.emplace(watched, registry.session(id).tty);
  };
  OutputWait disturbed(terminal, sessions, asked, {.now = [this] { return clock; }, .sleep = begins});
  watch->activities = {Activity::busy};
  EXPECT_EQ(structuredError(
                [&] { disturbed.wait({.sessionId = id, .waitSeconds = 45}, registry.session(id), {}); }),
            catalogue::sessionNotAllowed("terminal_read_output", registry.session(id).reference()));
  EXPECT_LT(clock - begun, 1s);
  EXPECT_EQ(registry.session(id).permission, SessionPermission::managed);
}

TEST_F(OutputWaitTest, TellsTheLastLineMeanwhile) {
  watch->activities = {Activity::busy};
  Caller caller;
  int told = 0;
  caller.hearLastLine = [&](const std::string& line) { told += line == "output" ? 1 : 0; };
  EXPECT_FALSE(wait({.waitSeconds = 10}, caller));
  EXPECT_GE(told, 8);
  EXPECT_LE(told, 10);
}

TEST_F(OutputWaitTest, EndsWhenTheCallerHasLeft) {
  watch->activities = {Activity::busy};
  for (const auto until : {ReadUntil::idle, ReadUntil::change, ReadUntil::text}) {
    Caller caller;
    caller.hasLeft = [looks = 0]() mutable { return ++looks > 3; };
    const auto start = clock;
    EXPECT_FALSE(wait({.waitSeconds = 45, .until = until, .waitText = "never"}, caller));
    EXPECT_LT(clock - start, 1s);
  }
}

TEST_F(OutputWaitTest, EndsWhenTheTerminalCannotBeLookedAt) {
  terminal.failWith("readOutput", std::runtime_error("gone"));
  EXPECT_FALSE(wait({.waitSeconds = 45, .until = ReadUntil::change}));
  EXPECT_EQ(clock, begun);
}

TEST_F(OutputWaitTest, UsesTheListingWhereATerminalHasNoWatch) {
  terminal.tabWatch = nullptr;
  terminal.tabs[0].busy = true;
  EXPECT_FALSE(wait({.waitSeconds = 1}));
  terminal.tabs[0].busy = false;
}

TEST_F(OutputWaitTest, AReadSaysWhetherItWasMetAndReadsAfterwards) {
  OutputService reads{terminal, sessions, permissions};
  const auto reading = reads.read({.sessionId = id, .waitSeconds = 5});
  EXPECT_EQ(reading.payload.met, true);
  EXPECT_TRUE(terminal.calls().back().starts_with("readOutput(visible"));
  EXPECT_EQ(reads.read({.sessionId = id}).payload.met, std::nullopt);
}

}  // namespace
}  // namespace velmora
