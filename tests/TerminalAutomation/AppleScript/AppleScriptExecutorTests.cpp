#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <set>

#include "TerminalAutomation/AppleScript/AppleScriptExecutor.h"
#include "tests/TerminalAutomation/AppleScript/ScriptedHost.h"
#include "tests/support/FakeTime.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::scriptFlag;
using testing::scriptList;
using testing::scriptNumber;
using testing::scriptRow;
using testing::scriptText;

class AppleScriptExecutorTest : public ::testing::Test {
 protected:
  AppleScriptParts parts() {
    return {.script = std::make_unique<testing::ScriptedHost>(script_),
            .isRunning = [](const std::string&) { return true; },
            .start = [](const std::string&) {},
            .screenWindows = [] { return ScreenWindows{{.number = 41}}; },
            .programs = std::make_unique<testing::ScriptedPrograms>(programs_),
            .temporaryDirectory = directory_.path(),
            .uuid = testing::countingUuids()};
  }

  TemporaryDirectory directory_;
  testing::ScriptedHost::State script_;
  testing::ScriptedPrograms::State programs_;
};

TEST_F(AppleScriptExecutorTest, CannotBeMadeFromASourceThatDoesNotCompile) {
  script_.compiles = false;
  EXPECT_THROW(AppleScriptExecutor(parts(), "on"), PlatformError);
}

TEST_F(AppleScriptExecutorTest, EveryOperationReachesItsHandler) {
  script_.replies = {{"bridgeStatus", scriptList({scriptFlag(true), scriptNumber(2)})},
                     {"listSessions", scriptList({scriptRow("/dev/ttys001")})},
                     {"createWindow", scriptRow("/dev/ttys002")},
                     {"readOutput", scriptList({scriptText("text"), scriptNumber(4)})},
                     {"captureBounds", scriptList(std::vector<ScriptDescriptor>(4))}};
  AppleScriptExecutor executor(parts(), "source");
  EXPECT_EQ(script_.source, "source");
  EXPECT_EQ(executor.displayName(), "Terminal.app");
  EXPECT_EQ(executor.status().get().windowCount, 2);
  EXPECT_EQ(executor.listSessions().get().size(), 1u);
  EXPECT_EQ(executor.createWindow().get().tty, "/dev/ttys002");
  executor.send("ls", "/dev/ttys001", 41).get();
  executor.send(TerminalKey::escape, 2, "/dev/ttys001", 41).get();
  EXPECT_EQ(executor.readOutput(OutputSource::visible, 9, "/dev/ttys001", 41).get().text, "text");
  EXPECT_TRUE(executor.captureScreen("/dev/ttys001", 41).get().imagePath.ends_with(".png"));
  executor.focus("/dev/ttys001", 41).get();
  executor.closeTestWindow(41).get();
  executor.requestAccess().get();
  executor.requestSystemEventsAccess().get();

  std::vector<std::string> handlers;
  for (const auto& call : script_.calls) handlers.push_back(call.handler);
  EXPECT_EQ(handlers,
            (std::vector<std::string>{"bridgeStatus", "listSessions", "createWindow", "sendCommand",
                                      "sendKey", "sendKey", "sendKey", "readOutput", "captureBounds",
                                      "focusSession", "closeWindow", "bridgeStatus", "systemEventsStatus"}));
  // The two conveniences refuse busy tabs.
  EXPECT_EQ(script_.calls[3].arguments.back(), ScriptArgument(false));
  EXPECT_EQ(script_.calls[4].arguments.back(), ScriptArgument(false));
}

TEST_F(AppleScriptExecutorTest, AUserWhoWasNeverAskedIsAskedOnceBehindTheCallThatFoundIt) {
  script_.consents = {consentStatus::notAsked, consentStatus::granted};
  AppleScriptExecutor executor(parts(), "source");
  EXPECT_EQ(executor.status().get().permission, AutomationPermission::unknown);
  EXPECT_EQ(executor.status().get().permission, AutomationPermission::granted);
  EXPECT_EQ(script_.consentQuestions,
            (std::vector<std::string>{"com.apple.Terminal", "com.apple.Terminal?", "com.apple.Terminal"}));
}

TEST_F(AppleScriptExecutorTest, FailuresArriveThroughTheFuture) {
  script_.replies["focusSession"] = ScriptFailure{-1728};
  AppleScriptExecutor executor(parts(), "source");
  auto focused = executor.focus("/dev/ttys001", 41);
  EXPECT_THROW(focused.get(), PlatformError);
}

TEST_F(AppleScriptExecutorTest, OneThreadOfItsOwnEntersTheScriptOneCallAtATime) {
  std::atomic<int> inside = 0;
  std::atomic<bool> met = false;
  script_.duringCall = [&] {
    if (++inside > 1) met = true;
    std::this_thread::yield();
    --inside;
  };
  {
    AppleScriptExecutor executor(parts(), "source");
    std::vector<std::thread> callers;
    for (int caller = 0; caller < 4; ++caller) {
      callers.emplace_back([&] {
        for (int call = 0; call < 50; ++call) executor.focus("/dev/ttys001", 41).get();
      });
    }
    for (auto& caller : callers) caller.join();
  }
  EXPECT_FALSE(met);
  EXPECT_EQ(script_.calls.size(), 200u);
  const std::set<std::thread::id> threads(script_.threads.begin(), script_.threads.end());
  EXPECT_EQ(threads.size(), 1u);
  EXPECT_FALSE(threads.contains(std::this_thread::get_id()));
  EXPECT_EQ(script_.compiledOn, std::this_thread::get_id());
}

TEST_F(AppleScriptExecutorTest, CancellingFailsWhatWaitsAndEndsTheTool) {
  std::latch entered(1);
  std::latch leave(1);
  script_.duringCall = [&] {
    entered.count_down();
    leave.wait();
  };
  AppleScriptExecutor executor(parts(), "source");
  auto underWay = executor.focus("/dev/ttys001", 41);
  auto waiting = executor.focus("/dev/ttys002", 42);
  entered.wait();
  executor.cancel();
  leave.count_down();
  EXPECT_NO_THROW(underWay.get());
  EXPECT_THROW(waiting.get(), PlatformError);
  EXPECT_THROW(executor.status().get(), PlatformError);
  EXPECT_TRUE(programs_.cancelled);
  EXPECT_EQ(script_.calls.size(), 1u);
}

}  // namespace
}  // namespace velmora
