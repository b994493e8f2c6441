#include "BridgeCore/LastLine.h"
#include "tests/support/CoreFixture.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;

class LastLineTest : public testing::CoreFixture {
 protected:
  LastLineTest() {
    terminal.output.text = "one\nstep 3 of 4  \n\n";
    caller.hearLastLine = [this](const std::string& line) { told.push_back(line); };
  }

  const Uuid id = registerTab();
  std::vector<std::string> told;
  Caller caller;
  std::chrono::steady_clock::time_point clock = std::chrono::steady_clock::now();
  LastLine lastLine{terminal, permissions, id, caller, [this] { return clock; }};
};

TEST_F(LastLineTest, IsToldOnceASecond) {
  lastLine.tell();
  EXPECT_TRUE(told.empty());
  for (int i = 0; i < 25; ++i) {
    clock += 100ms;
    lastLine.tell();
  }
  EXPECT_EQ(told, (std::vector<std::string>{"step 3 of 4", "step 3 of 4"}));
}

TEST_F(LastLineTest, ForACallerWhoDidNotAskTheTerminalIsNotAsked) {
  caller.hearLastLine = {};
  const auto before = terminal.calls().size();
  clock += 2s;
  lastLine.tell();
  EXPECT_EQ(terminal.calls().size(), before);
}

TEST_F(LastLineTest, OfABlockedSessionNothingIsToldAndNothingRead) {
  registry.setPermission(SessionPermission::blocked, id);
  const auto before = terminal.calls().size();
  clock += 2s;
  lastLine.tell();
  EXPECT_TRUE(told.empty());
  EXPECT_EQ(terminal.calls().size(), before);
}

TEST_F(LastLineTest, IsShort) {
  terminal.output.text = std::string(5000, 'x');
  clock += 1s;
  lastLine.tell();
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0].size(), 200u);
}

TEST_F(LastLineTest, ATerminalThatFailsTellsNothing) {
  terminal.failWith("readOutput", std::runtime_error("gone"));
  clock += 1s;
  EXPECT_NO_THROW(lastLine.tell());
  EXPECT_TRUE(told.empty());
}

}  // namespace
}  // namespace velmora
