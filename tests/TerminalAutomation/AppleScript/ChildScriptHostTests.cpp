#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <fstream>
#include <thread>

#include "TerminalAutomation/AppleScript/ChildScriptHost.h"
#include "TerminalAutomation/PlatformError.h"
#include "tests/support/Eventually.h"
#include "tests/support/Files.h"
#include "tests/support/LogLines.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::contentOf;
using ::testing::Each;
using testing::eventually;
using ::testing::HasSubstr;
using testing::isAlive;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class ChildScriptHost : public ::testing::Test {
 protected:
  ChildScriptHost() { EXPECT_TRUE(host_.compile("the script")); }

  static ScriptHost::Deadline soon() { return std::chrono::steady_clock::now() + 300ms; }
  static ScriptHost::Deadline late() { return std::chrono::steady_clock::now() + testing::patience; }

  std::int64_t failureOf(const std::string& handler, const std::vector<ScriptArgument>& arguments = {}) {
    return std::get<ScriptFailure>(host_.call(handler, arguments, late())).number.value();
  }
  std::string textOf(const std::string& handler) {
    return std::get<ScriptDescriptor>(host_.call(handler, {}, late())).text;
  }
  pid_t process() { return std::get<ScriptDescriptor>(host_.call("process", {}, late())).integer; }
  std::string began() const { return contentOf(directory_ / "began"); }

  const TemporaryDirectory directory_;
  const std::string file_ = directory_ / "began";
  testing::LogLines lines_;
  velmora::ChildScriptHost host_{VELMORA_BIN "/FakeScriptHost", Environment{}, lines_.log()};
};

TEST_F(ChildScriptHost, CompilesAndPassesArgumentsAndValuesOn) {
  EXPECT_EQ(textOf("source"), "the script");
  const auto reply = host_.call("echo", {std::string("제목 \"\n"), -7, true, std::string()}, late());
  const auto& items = std::get<ScriptDescriptor>(reply).items;
  ASSERT_THAT(items, SizeIs(4));
  EXPECT_EQ(items[0].text, "제목 \"\n");
  EXPECT_EQ(items[1].integer, -7);
  EXPECT_TRUE(items[2].boolean);
  EXPECT_EQ(items[3].text, "");
  EXPECT_THAT(lines_.all(), IsEmpty());
}

TEST_F(ChildScriptHost, PassesOnMoreThanAPipeHolds) {
  const std::string text(900'000, 'x');
  const auto reply = host_.call("echo", {text}, late());
  EXPECT_TRUE(std::get<ScriptDescriptor>(reply).items.at(0).text == text);
}

TEST_F(ChildScriptHost, PassesTheScriptsOwnErrorsOn) {
  const pid_t before = process();
  EXPECT_EQ(failureOf("refused"), -1743);
  EXPECT_FALSE(std::get<ScriptFailure>(host_.call("nameless", {}, late())).number.has_value());
  EXPECT_EQ(process(), before);
}

TEST_F(ChildScriptHost, PassesQuestionsForConsentAndTheirAnswersOn) {
  EXPECT_EQ(host_.consent("denied", false, late()), consentStatus::denied);
  EXPECT_EQ(host_.consent("other", false, late()), consentStatus::notAsked);
  EXPECT_EQ(host_.consent("other", true, late()), consentStatus::granted);
}

TEST_F(ChildScriptHost, AQuestionThatNobodyAnswersEndsAtItsDeadlineOrWithTheBridge) {
  EXPECT_EQ(host_.consent("undecided", true, soon()), platformErrorCode::timedOut);
  const pid_t child = process();
  std::thread canceller([&] { host_.cancel(); });
  EXPECT_EQ(host_.consent("undecided", true, ScriptHost::Deadline::max()), platformErrorCode::userCancelled);
  canceller.join();
  EXPECT_FALSE(isAlive(child));
}

TEST_F(ChildScriptHost, SaysWhetherTheScriptCompiles) {
  EXPECT_FALSE(host_.compile("wrong"));
  EXPECT_TRUE(host_.compile("another"));
  EXPECT_EQ(textOf("source"), "another");
}

TEST_F(ChildScriptHost, BreaksOffACallAtItsDeadlineAndServesTheNext) {
  const pid_t before = process();
  const auto start = std::chrono::steady_clock::now();
  const auto reply = host_.call("hang", {}, soon());
  EXPECT_EQ(std::get<ScriptFailure>(reply).number, platformErrorCode::timedOut);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
  EXPECT_FALSE(isAlive(before));
  EXPECT_EQ(textOf("source"), "the script") << "the new process has compiled it";
  EXPECT_NE(process(), before);
}

TEST_F(ChildScriptHost, WaitsForASlowCall) { EXPECT_EQ(textOf("slow"), ""); }

TEST_F(ChildScriptHost, NeverRepeatsACallThatMayHaveBegun) {
  for (const std::string handler : {"crash", "garbage", "endless", "half"}) {
    EXPECT_EQ(failureOf(handler, {file_}), platformErrorCode::connectionInvalid) << handler;
    EXPECT_EQ(textOf("source"), "the script") << handler;
  }
  EXPECT_EQ(began(), "crash\ngarbage\nendless\nhalf\n");
  EXPECT_THAT(lines_.all(), SizeIs(4));
  EXPECT_THAT(lines_.all(), Each(HasSubstr("FakeScriptHost ")));
}

TEST_F(ChildScriptHost, ADeathBetweenCallsCostsNoCall) {
  const pid_t before = process();
  ::kill(before, SIGKILL);
  ASSERT_TRUE(eventually([&] { return !isAlive(before); }));
  EXPECT_EQ(textOf("source"), "the script");
}

TEST_F(ChildScriptHost, AnAnswerTooManyIsNoOtherCallsAnswer) {
  EXPECT_EQ(textOf("twice"), "first");
  EXPECT_EQ(textOf("source"), "the script");
}

TEST_F(ChildScriptHost, AnAnswerAheadOfItsRequestEndsTheProcess) {
  EXPECT_EQ(failureOf("ahead", {file_}), platformErrorCode::connectionInvalid);
  EXPECT_EQ(textOf("source"), "the script");
  EXPECT_EQ(began(), "ahead\n");
}

TEST_F(ChildScriptHost, CancelEndsTheCallUnderWayAndEveryLaterOne) {
  std::thread canceller([&] {
    eventually([&] { return began() == "hang\n"; });
    host_.cancel();
  });
  EXPECT_EQ(failureOf("hang", {file_}), platformErrorCode::userCancelled);
  canceller.join();
  EXPECT_EQ(failureOf("echo"), platformErrorCode::userCancelled);
  EXPECT_FALSE(host_.compile("the script"));
}

TEST_F(ChildScriptHost, ItsEndWaitsForNoCall) {
  pid_t child = 0;
  {
    velmora::ChildScriptHost other(VELMORA_BIN "/FakeScriptHost", Environment{}, Log());
    ASSERT_TRUE(other.compile(""));
    child = std::get<ScriptDescriptor>(other.call("process", {}, late())).integer;
    ::kill(child, SIGSTOP);
  }
  EXPECT_FALSE(isAlive(child));
}

TEST_F(ChildScriptHost, AMissingProgramIsAFailureAndASaidOne) {
  velmora::ChildScriptHost host(directory_ / "nowhere", Environment{}, lines_.log());
  EXPECT_FALSE(host.compile("the script"));
  EXPECT_EQ(std::get<ScriptFailure>(host.call("echo", {}, late())).number, platformErrorCode::scriptError);
  EXPECT_THAT(lines_.all(), Each(HasSubstr("nowhere")));
  EXPECT_THAT(lines_.all(), SizeIs(2));
}

TEST_F(ChildScriptHost, StartingAnewIsPartOfTheCallsTime) {
  ASSERT_TRUE(host_.compile("hang when there is " + file_));
  ASSERT_EQ(failureOf("crash"), platformErrorCode::connectionInvalid);
  std::ofstream(file_) << "now";
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(std::get<ScriptFailure>(host_.call("echo", {}, soon())).number, platformErrorCode::timedOut);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
}

}  // namespace
}  // namespace velmora
