#include "VelmoraApp/MenuBar/MenuBarViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

using testing::spinUntil;

class MenuBarViewModelTest : public testing::AppFixture {};

TEST_F(MenuBarViewModelTest, SaysTheStateAtAGlance) {
  startApp();
  const MenuBarViewModel menuBar(*app);
  EXPECT_EQ(menuBar.symbol(), "terminal");
  EXPECT_EQ(menuBar.stateText(), "MCP Active");
  EXPECT_EQ(menuBar.clientsText(), "Clients: 0");
  EXPECT_EQ(menuBar.sessionsText(), "Managed sessions: 2");
  EXPECT_EQ(menuBar.errorText(), "");
  EXPECT_EQ(menuBar.pauseText(), "Pause changes");
}

TEST_F(MenuBarViewModelTest, PausesAndResumes) {
  startApp();
  MenuBarViewModel menuBar(*app);
  const auto changes = testing::countOf(menuBar, &MenuBarViewModel::changed);
  menuBar.togglePause();
  EXPECT_EQ(*changes, 1);
  EXPECT_EQ(menuBar.symbol(), "pause.circle.fill");
  EXPECT_EQ(menuBar.stateText(), "MCP Paused");
  EXPECT_EQ(menuBar.pauseText(), "Resume changes");
  EXPECT_EQ(sendCommand("ls").error->code, ErrorCode::mcpPaused);
  menuBar.togglePause();
  EXPECT_EQ(menuBar.symbol(), "terminal");
  app->poll();
  EXPECT_TRUE(
      spinUntil([&] { return menuBar.errorText() == "Last error: MCP change operations are paused."; }));
}

}  // namespace
}  // namespace velmora
