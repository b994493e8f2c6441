#include "VelmoraApp/Shell/MenuBarViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/FakeDesktop.h"

namespace velmora {
namespace {

using testing::spinUntil;

class MenuBarViewModelTest : public testing::AppFixture {
 protected:
  testing::FakeDesktop desktop{QString::fromStdString((directory / "defaults.ini").string())};
};

TEST_F(MenuBarViewModelTest, SaysTheStateAtAGlance) {
  startApp();
  const MenuBarViewModel menuBar(*app, desktop);
  EXPECT_EQ(menuBar.symbol(), "terminal");
  EXPECT_EQ(menuBar.stateText(), "MCP Active");
  EXPECT_EQ(menuBar.clientsText(), "Clients: 0");
  EXPECT_EQ(menuBar.sessionsText(), "Managed sessions: 2");
  EXPECT_EQ(menuBar.errorText(), "");
  EXPECT_EQ(menuBar.pauseText(), "Pause changes");
}

TEST_F(MenuBarViewModelTest, PausesAndResumes) {
  startApp();
  MenuBarViewModel menuBar(*app, desktop);
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
