// What tmux itself tells of the bridge, where the user wants that.
#include <gmock/gmock.h>

#include "tests/BridgeHost/HeadlessFixture.h"

namespace velmora {
namespace {

using testing::eventually;

class HeadlessMarks : public testing::HeadlessFixture {
 protected:
  std::string state() { return tmux({"show-options", "-gqv", "@velmora"}); }
  std::string permissionOf(const std::string& pane) {
    return tmux({"show-options", "-pqv", "-t", pane, "@velmora_permission"});
  }
};

TEST_F(HeadlessMarks, FollowWhatAgentsDoAndGoWithTheBridge) {
  writeSettings({.tmuxMarks = true});
  startTmux();
  startHeadless();
  const auto session = createSession();
  const auto id = textAt(session, "sessionId");
  const auto pane = paneOf(textAt(session, "tty"));
  payload(ToolName::listSessions);
  EXPECT_TRUE(eventually([&] { return permissionOf(pane) == "managed"; }));
  EXPECT_TRUE(eventually([&] { return permissionOf("main:0.0") == "managed"; }));
  EXPECT_EQ(state(), "");
  payload(ToolName::sendCommand, {{"sessionId", id}, {"command", "true"}});
  EXPECT_TRUE(eventually([&] { return state() == "agent types in " + pane; })) << state();
  headless->signal(SIGUSR1);
  EXPECT_TRUE(eventually([&] { return state() == "paused"; }));
  EXPECT_EQ(tmux({"display-message", "-p", "#{@velmora}"}), "paused") << "as status-right has it";
  EXPECT_EQ(endHeadless(), 0);
  EXPECT_EQ(state(), "");
  EXPECT_EQ(permissionOf(pane), "");
}

TEST_F(HeadlessMarks, AreSetForNobodyWhoDidNotAsk) {
  startTmux();
  startHeadless();
  payload(ToolName::listSessions);
  headless->signal(SIGUSR1);
  EXPECT_TRUE(eventually([&] {
    return textAt(at(payload(ToolName::status), "status"), "mcpState") == wireName(MCPState::paused);
  }));
  EXPECT_EQ(endHeadless(), 0);
  EXPECT_EQ(tmux({"show-options", "-g"}).find("@velmora"), std::string::npos);
  EXPECT_EQ(permissionOf("main:0.0"), "");
}

}  // namespace
}  // namespace velmora
