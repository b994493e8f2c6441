// Against the program itself.
#include "BridgeHost/OtherBridge.h"
#include "tests/BridgeHost/HeadlessFixture.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using OtherBridgeTest = testing::HeadlessFixture;

TEST_F(OtherBridgeTest, NobodyAnswersWhereNobodyServes) {
  EXPECT_FALSE(otherBridgeAt(socketPath()));
  EXPECT_NO_THROW(endOtherBridge(socketPath(), ::getpid()));
}

TEST_F(OtherBridgeTest, TheOneThatServesIsNamed) {
  startHeadless();
  const auto other = otherBridgeAt(socketPath());
  ASSERT_TRUE(other);
  EXPECT_EQ(other->process, headless->process());
  EXPECT_EQ(other->about.name, "velmora-headless");
  EXPECT_TRUE(other->about.startedAt);
}

TEST_F(OtherBridgeTest, OnlyTheOneThatServesIsEnded) {
  startHeadless();
  testing::ChildProgram bystander({"/bin/sleep", "1000"}, {});
  EXPECT_THROW(endOtherBridge(socketPath(), bystander.process()), std::runtime_error);
  EXPECT_TRUE(runningProcess(bystander.process()));
  EXPECT_TRUE(otherBridgeAt(socketPath()));
  endOtherBridge(socketPath(), headless->process());
  EXPECT_FALSE(runningProcess(headless->process()));
  EXPECT_EQ(headless->wait(), 0);
  headless.reset();
  EXPECT_FALSE(otherBridgeAt(socketPath()));
}

TEST_F(OtherBridgeTest, OneThatDoesNotEndIsNotWaitedForForEver) {
  startHeadless();
  headless->signal(SIGSTOP);
  EXPECT_THROW(endOtherBridge(socketPath(), headless->process(), std::chrono::milliseconds(50)),
               std::runtime_error);
  headless->signal(SIGCONT);
  EXPECT_EQ(headless->wait(), 0);
  headless.reset();
}

}  // namespace
}  // namespace velmora
