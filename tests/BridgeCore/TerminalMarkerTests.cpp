#include "BridgeCore/TerminalMarker.h"
#include "tests/support/CoreFixture.h"
#include "tests/support/Eventually.h"

namespace velmora {
namespace {

using testing::eventually;

class TerminalMarkerTest : public testing::CoreFixture {
 protected:
  bool isShown(const TerminalMarks& marks) {
    return eventually([&] { return !terminal.marked().empty() && terminal.marked().back() == marks; });
  }
};

TEST_F(TerminalMarkerTest, ShowsNothingUntilItIsSwitchedOn) {
  TerminalMarker marker(terminal, registry, state);
  const auto id = registerTab();
  marker.look();
  marker.agentTypes(id);
  marker.end();
  EXPECT_TRUE(terminal.marked().empty());
}

TEST_F(TerminalMarkerTest, ShowsPermissionsThePauseAndWhereAnAgentTypes) {
  const auto id = registerTab(SessionPermission::readOnly);
  const std::string tty = registry.session(id).tty;
  TerminalMarker marker(terminal, registry, state);
  marker.use(true);
  EXPECT_TRUE(isShown({.state = "", .tabs = {{tty, {id, SessionPermission::readOnly}}}}));
  marker.agentTypes(id);
  EXPECT_TRUE(
      isShown({.state = "agent types in " + tty, .tabs = {{tty, {id, SessionPermission::readOnly}}}}));
  state.set(MCPState::paused);
  registry.setPermission(SessionPermission::blocked, id);
  marker.look();
  EXPECT_TRUE(isShown({.state = "paused", .tabs = {{tty, {id, SessionPermission::blocked}}}}));
}

TEST_F(TerminalMarkerTest, TellsTheTerminalOnlyWhatHasChanged) {
  const auto id = registerTab();
  TerminalMarker marker(terminal, registry, state);
  marker.use(true);
  EXPECT_TRUE(eventually([&] { return terminal.marked().size() == 1; }));
  for (int look = 0; look < 50; ++look) marker.look();
  registry.setPermission(SessionPermission::blocked, id);
  marker.look();
  EXPECT_TRUE(isShown({.state = "", .tabs = {{registry.session(id).tty, {id, SessionPermission::blocked}}}}));
  EXPECT_EQ(terminal.marked().size(), 2u);
}

TEST_F(TerminalMarkerTest, TakesEverythingAwayWhenItIsSwitchedOffAndAtTheEnd) {
  registerTab();
  TerminalMarker marker(terminal, registry, state);
  marker.use(true);
  EXPECT_TRUE(eventually([&] { return terminal.marked().size() == 1; }));
  marker.use(false);
  EXPECT_TRUE(isShown({}));
  marker.use(true);
  EXPECT_TRUE(eventually([&] { return terminal.marked().size() == 3; }));
  marker.end();
  EXPECT_EQ(terminal.marked().back(), TerminalMarks{});
  marker.use(true);
  EXPECT_EQ(terminal.marked().size(), 4u);
}

TEST_F(TerminalMarkerTest, ATerminalThatFailsIsToldAgainAtTheNextChange) {
  registerTab();
  terminal.failWith("mark", StructuredError{.code = ErrorCode::terminalNotRunning});
  TerminalMarker marker(terminal, registry, state);
  marker.use(true);
  EXPECT_TRUE(eventually([&] { return terminal.callCount("mark") == 1; }));
  marker.look();
  EXPECT_TRUE(eventually([&] { return terminal.callCount("mark") == 2; }));
  EXPECT_TRUE(terminal.marked().empty());
}

TEST_F(TerminalMarkerTest, WhatMayBeShownDespiteAFailureIsTakenAwayToo) {
  registerTab();
  terminal.failWith("mark", StructuredError{.code = ErrorCode::terminalNotRunning});
  TerminalMarker marker(terminal, registry, state);
  marker.use(true);
  EXPECT_TRUE(eventually([&] { return terminal.callCount("mark") == 1; }));
  marker.use(false);
  EXPECT_TRUE(eventually([&] { return terminal.callCount("mark") == 2; }));
}

}  // namespace
}  // namespace velmora
