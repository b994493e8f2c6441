#include "VelmoraApp/Shell/VelmoraMenuBar.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/FakeDesktop.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;

class VelmoraMenuBarTest : public testing::AppFixture {
 protected:
  static std::vector<std::string> visibleTexts(const QMenu& menu) {
    std::vector<std::string> texts;
    for (const auto* action : menu.actions()) {
      if (action->isVisible() && !action->isSeparator()) texts.push_back(action->text().toStdString());
    }
    return texts;
  }
  static QAction* entry(const QMenu& menu, const QString& text) {
    for (auto* action : menu.actions()) {
      if (action->text() == text) return action;
    }
    return nullptr;
  }

  testing::FakeDesktop desktop{QString::fromStdString((directory / "defaults.ini").string())};
};

TEST_F(VelmoraMenuBarTest, HasItsEntriesInOrderAndTheErrorOnlyWhenThereIsOne) {
  startApp();
  MenuBarViewModel viewModel(*app, desktop);
  const VelmoraMenuBar menuBar(viewModel);
  EXPECT_THAT(visibleTexts(menuBar.menu()),
              ElementsAre("MCP Active", "Clients: 0", "Managed sessions: 2", "Pause changes", "Open Velmora",
                          "Open Permission Settings"));
  app->setPaused(true);
  sendCommand("ls");
  app->poll();
  ASSERT_TRUE(testing::spinUntil([&] { return visibleTexts(menuBar.menu()).size() == 7; }));
  EXPECT_THAT(visibleTexts(menuBar.menu()),
              ElementsAre("MCP Paused", "Clients: 0", "Managed sessions: 2",
                          "Last error: MCP change operations are paused.", "Resume changes", "Open Velmora",
                          "Open Permission Settings"));
}

TEST_F(VelmoraMenuBarTest, ItsSwitchPausesAndItsEntryOpensTheWindow) {
  startApp();
  MenuBarViewModel viewModel(*app, desktop);
  VelmoraMenuBar menuBar(viewModel);
  const auto opens = testing::countOf(menuBar, &VelmoraMenuBar::openRequested);
  entry(menuBar.menu(), "Open Velmora")->trigger();
  EXPECT_EQ(*opens, 1);
  entry(menuBar.menu(), "Pause changes")->trigger();
  EXPECT_EQ(app->status().mcpState, MCPState::paused);
  EXPECT_NE(entry(menuBar.menu(), "Resume changes"), nullptr);
}

TEST_F(VelmoraMenuBarTest, OffersNoPauseBeforeTheIntroductionIsOver) {
  options.onboardingCompleted = false;
  app = std::make_unique<AppModel>(options);
  MenuBarViewModel viewModel(*app, desktop);
  const VelmoraMenuBar menuBar(viewModel);
  EXPECT_THAT(visibleTexts(menuBar.menu()), ElementsAre("MCP Paused", "Clients: 0", "Managed sessions: 0",
                                                        "Open Velmora", "Open Permission Settings"));
  app->finishIntroduction(SessionPolicy::safe);
  ASSERT_TRUE(testing::spinUntil([this] { return hasRefreshed(1); }));
  EXPECT_TRUE(entry(menuBar.menu(), "Pause changes")->isVisible());
}

TEST_F(VelmoraMenuBarTest, OffersNoPauseOfAnotherBridge) {
  BridgeHost other({.environment = options.bridge.environment,
                    .makeTerminal = [](const auto&) { return std::make_unique<testing::FakeTerminal>(); }});
  app = std::make_unique<AppModel>(options);
  MenuBarViewModel viewModel(*app, desktop);
  const VelmoraMenuBar menuBar(viewModel);
  EXPECT_THAT(visibleTexts(menuBar.menu()),
              ElementsAre("Another bridge is serving", "Open Velmora", "Open Permission Settings"));
}

TEST_F(VelmoraMenuBarTest, SaysThatNoPermissionIsNeededWhereNoneIs) {
  startApp();
  MenuBarViewModel viewModel(*app, desktop);
  const VelmoraMenuBar menuBar(viewModel);
  const auto* panes = entry(menuBar.menu(), "Open Permission Settings")->menu();
  ASSERT_NE(panes, nullptr);
  EXPECT_THAT(visibleTexts(*panes), ElementsAre("Fake needs no permission"));
  EXPECT_FALSE(panes->actions()[0]->isEnabled());
}

TEST_F(VelmoraMenuBarTest, OffersThePanesOfTerminalApp) {
  desktop.context.terminal = GuidedTerminal::terminalApp;
  startApp();
  MenuBarViewModel viewModel(*app, desktop);
  const VelmoraMenuBar menuBar(viewModel);
  const auto* panes = entry(menuBar.menu(), "Open Permission Settings")->menu();
  ASSERT_NE(panes, nullptr);
  EXPECT_THAT(visibleTexts(*panes), ElementsAre("Accessibility", "Automation", "Screen Recording"));
  entry(*panes, "Automation")->trigger();
  EXPECT_THAT(desktop.openedPanes, ElementsAre(SystemSettingsLink::automation));
}

}  // namespace
}  // namespace velmora
