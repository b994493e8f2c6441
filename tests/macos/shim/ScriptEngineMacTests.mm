#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <limits>

#import "FakeSystem.h"
#include "TerminalAutomation/AppleScript/ScriptHost.h"

namespace velmora {
namespace {

using namespace std::string_literals;

class ScriptEngineMac : public ::testing::Test {
 protected:
  ScriptEngineMac() {
    fakeCompiles = YES;
    fakeReply = [FakeDescriptor descriptorWithString:@""];
    fakeError = nil;
  }

  ~ScriptEngineMac() override { [pool_ release]; }

  FakeDescriptor* argument(NSInteger position) {
    return [[fakeEvent paramDescriptorForKeyword:'----'] descriptorAtIndex:position];
  }
  ScriptDescriptor reply(FakeDescriptor* descriptor) {
    fakeReply = descriptor;
    return std::get<ScriptDescriptor>(engine_->call("status", {}));
  }
  ScriptFailure failure(NSDictionary* error) {
    fakeReply = nil;
    fakeError = error;
    return std::get<ScriptFailure>(engine_->call("status", {}));
  }

  NSAutoreleasePool* const pool_ = [NSAutoreleasePool new];
  std::unique_ptr<ScriptEngine> engine_ = [] {
    auto engine = systemScriptEngine();
    engine->compile("");
    return engine;
  }();
};

TEST_F(ScriptEngineMac, CompilesTheSourceThatItWasGiven) {
  EXPECT_TRUE(engine_->compile("-- 안녕\n"));
  EXPECT_STREQ([fakeSource UTF8String], "-- 안녕\n");
  fakeCompiles = NO;
  EXPECT_FALSE(engine_->compile("on"));
}

TEST_F(ScriptEngineMac, CallsASubroutineOfTheScriptItself) {
  engine_->call("bridgeStatus", {});
  EXPECT_EQ(fakeEvent->eventClass, static_cast<unsigned>('ascr'));
  EXPECT_EQ(fakeEvent->eventID, static_cast<unsigned>('psbr'));
  EXPECT_EQ(fakeEvent->returnID, -1);
  EXPECT_EQ(fakeEvent->transactionID, 0);
  EXPECT_TRUE(fakeEvent->target == nil);
  EXPECT_STREQ([[[fakeEvent paramDescriptorForKeyword:'snam'] stringValue] UTF8String], "bridgestatus");
  EXPECT_EQ([[fakeEvent paramDescriptorForKeyword:'----'] numberOfItems], 0);
}

TEST_F(ScriptEngineMac, ArgumentsKeepTheirOrderAndKind) {
  engine_->call("sendCommand", {"echo '안녕 😀'"s, "/dev/ttys001"s, std::numeric_limits<std::int32_t>::max(),
                                std::numeric_limits<std::int32_t>::min(), true, false});
  EXPECT_EQ([[fakeEvent paramDescriptorForKeyword:'----'] numberOfItems], 6);
  EXPECT_STREQ([[argument(1) stringValue] UTF8String], "echo '안녕 😀'");
  EXPECT_STREQ([[argument(2) stringValue] UTF8String], "/dev/ttys001");
  EXPECT_EQ([argument(3) int32Value], std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ([argument(4) int32Value], std::numeric_limits<std::int32_t>::min());
  EXPECT_FALSE(argument(4)->isBoolean);
  EXPECT_TRUE(argument(5)->isBoolean && [argument(5) booleanValue]);
  EXPECT_TRUE(argument(6)->isBoolean && ![argument(6) booleanValue]);
}

TEST_F(ScriptEngineMac, ATextMayHoldANul) {
  engine_->call("sendCommand", {"a\0b"s});
  EXPECT_EQ([[argument(1) stringValue] length], 3u);
  EXPECT_EQ(reply(argument(1)).text, "a\0b"s);
}

TEST_F(ScriptEngineMac, ReadsEachValueInEveryWay) {
  const auto text = reply([FakeDescriptor descriptorWithString:[NSString stringWithUTF8String:"제목 12"]]);
  EXPECT_EQ(text.text, "제목 12");
  EXPECT_TRUE(text.items.empty());
  const auto number = reply([FakeDescriptor descriptorWithInt32:-7]);
  EXPECT_EQ(number.integer, -7);
  EXPECT_EQ(number.text, "-7");
  EXPECT_TRUE(reply([FakeDescriptor descriptorWithBoolean:1]).boolean);
  EXPECT_FALSE(reply([FakeDescriptor descriptorWithBoolean:0]).boolean);
}

TEST_F(ScriptEngineMac, AMissingValueReadsAsNothing) {
  const auto missing = reply([FakeDescriptor new]);
  EXPECT_EQ(missing.text, "");
  EXPECT_EQ(missing.integer, 0);
  EXPECT_FALSE(missing.boolean);
  EXPECT_TRUE(missing.items.empty());
}

TEST_F(ScriptEngineMac, ListsKeepTheirOrderAndDepth) {
  FakeDescriptor* const row = [FakeDescriptor listDescriptor];
  [row insertDescriptor:[FakeDescriptor descriptorWithString:@"/dev/ttys001"] atIndex:1];
  [row insertDescriptor:[FakeDescriptor descriptorWithInt32:41] atIndex:2];
  FakeDescriptor* const rows = [FakeDescriptor listDescriptor];
  [rows insertDescriptor:[FakeDescriptor listDescriptor] atIndex:1];
  [rows insertDescriptor:row atIndex:2];
  const auto list = reply(rows);
  ASSERT_EQ(list.items.size(), 2u);
  EXPECT_TRUE(list.items[0].items.empty());
  ASSERT_EQ(list.items[1].items.size(), 2u);
  EXPECT_EQ(list.items[1].items[0].text, "/dev/ttys001");
  EXPECT_EQ(list.items[1].items[1].integer, 41);
}

TEST_F(ScriptEngineMac, AFailureKeepsItsNumber) {
  NSDictionary* const error = [NSDictionary dictionaryWithObject:[NSNumber numberWithInt:-1743]
                                                          forKey:@"NSAppleScriptErrorNumber"];
  EXPECT_EQ(failure(error).number, -1743);
}

TEST_F(ScriptEngineMac, PassesTheQuestionForConsentAndItsAnswerOn) {
  fakeSystem = {.consent = -1744};
  EXPECT_EQ(engine_->consent("com.apple.Terminal", false), -1744);
  engine_->consent("com.apple.systemevents", true);
  EXPECT_EQ(fakeSystem.done,
            (std::vector<std::string>{"consent com.apple.Terminal", "consent com.apple.systemevents?"}));
}

TEST_F(ScriptEngineMac, AFailureMayHaveNoNumberAtAll) {
  EXPECT_EQ(failure(nil).number, std::nullopt);
  EXPECT_EQ(failure([NSDictionary dictionary]).number, std::nullopt);
  NSDictionary* const text = [NSDictionary dictionaryWithObject:@"-1743" forKey:@"NSAppleScriptErrorNumber"];
  EXPECT_EQ(failure(text).number, std::nullopt);
}

}  // namespace
}  // namespace velmora
