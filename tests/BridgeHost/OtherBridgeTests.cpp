// Against the program itself.
#include "BridgeHost/BridgeHost.h"
#include "tests/BridgeHost/HeadlessFixture.h"
#include "tests/support/FakeTerminal.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

class OtherBridgeTest : public testing::HeadlessFixture {
 protected:
  std::function<std::optional<OtherBridge>()> find = [this] { return otherBridgeAt(socketPath()); };
};

TEST_F(OtherBridgeTest, NobodyAnswersWhereNobodyServes) {
  EXPECT_FALSE(otherBridgeAt(socketPath()));
  EXPECT_NO_THROW(endOtherBridge(find, ::getpid()));
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
  EXPECT_THROW(endOtherBridge(find, bystander.process()), std::runtime_error);
  EXPECT_TRUE(runningProcess(bystander.process()));
  EXPECT_TRUE(otherBridgeAt(socketPath()));
  endOtherBridge(find, headless->process());
  EXPECT_FALSE(runningProcess(headless->process()));
  EXPECT_EQ(headless->wait(), 0);
  headless.reset();
  EXPECT_FALSE(otherBridgeAt(socketPath()));
}

TEST_F(OtherBridgeTest, TheOneThatHasOnlyTheDataFolderIsNamedAndEndedToo) {
  startHeadless();
  const TemporaryDirectory runtime;
  environment["XDG_RUNTIME_DIR"] = runtime.path().string();
  BridgeHost host({.environment = environment,
                   .makeTerminal = [](const auto&) { return std::make_unique<testing::FakeTerminal>(); }});
  EXPECT_EQ(host.localServer(), nullptr);
  ASSERT_TRUE(host.otherBridge());
  EXPECT_EQ(host.otherBridge()->process, headless->process());
  EXPECT_EQ(host.otherBridge()->about.name, "velmora-headless");
  host.endOther(headless->process());
  EXPECT_EQ(headless->wait(), 0);
  headless.reset();
  host.renewServer();
  EXPECT_FALSE(host.otherBridge());
  EXPECT_NE(host.localServer(), nullptr);
}

TEST_F(OtherBridgeTest, OneThatDoesNotEndIsNotWaitedForForEver) {
  startHeadless();
  headless->signal(SIGSTOP);
  EXPECT_THROW(endOtherBridge(find, headless->process(), std::chrono::milliseconds(50)), std::runtime_error);
  headless->signal(SIGCONT);
  EXPECT_EQ(headless->wait(), 0);
  headless.reset();
}

}  // namespace
}  // namespace velmora
