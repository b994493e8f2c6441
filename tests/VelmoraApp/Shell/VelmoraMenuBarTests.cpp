#include <QtCore/QLocale>

#include "VelmoraApp/AppModel/Translation.h"
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
  const VelmoraMenuBar menuBar(viewModel, desktop);
  EXPECT_THAT(visibleTexts(menuBar.menu()),
              ElementsAre("MCP Active", "Clients: 0", "Managed sessions: 2", "Pause changes", "Open Velmora",
                          "Open Permission Settings"));
  app->setPaused(true);
  sendCommand("ls");
  app->poll();
  // The error and the clients come from different threads.
  ASSERT_TRUE(testing::spinUntil([&] {
    const auto texts = visibleTexts(menuBar.menu());
    return texts.size() == 7 && texts[1] == "Clients: 1";
  }));
  EXPECT_THAT(visibleTexts(menuBar.menu()),
              ElementsAre("MCP Paused", "Clients: 1", "Managed sessions: 2",
                          "Last error: MCP change operations are paused.", "Resume changes", "Open Velmora",
                          "Open Permission Settings"));
}

TEST_F(VelmoraMenuBarTest, ItsSwitchPausesAndItsEntryOpensTheWindow) {
  startApp();
  MenuBarViewModel viewModel(*app, desktop);
  VelmoraMenuBar menuBar(viewModel, desktop);
  const auto opens = testing::countOf(menuBar, &VelmoraMenuBar::openRequested);
  entry(menuBar.menu(), "Open Velmora")->trigger();
  EXPECT_EQ(*opens, 1);
  entry(menuBar.menu(), "Pause changes")->trigger();
  EXPECT_EQ(app->status().mcpState, MCPState::paused);
  EXPECT_NE(entry(menuBar.menu(), "Resume changes"), nullptr);
}

TEST_F(VelmoraMenuBarTest, AClickOnItsIconOpensTheWindowWhereTheSystemLeavesClicksToIt) {
  startApp();
  MenuBarViewModel viewModel(*app, desktop);
  {
    VelmoraMenuBar menuBar(viewModel, desktop);
    const auto opens = testing::countOf(menuBar, &VelmoraMenuBar::openRequested);
    EXPECT_EQ(desktop.tray.menu, &menuBar.menu());
    desktop.tray.click();
    EXPECT_EQ(*opens, 1);
    menuBar.tell("There is a new version.");
    EXPECT_THAT(desktop.tray.told, ElementsAre("There is a new version."));
  }
  EXPECT_EQ(desktop.tray.menu, nullptr);
}

TEST_F(VelmoraMenuBarTest, ItsIconIsAShapeAndChangesOnlyWithTheState) {
  startApp();
  MenuBarViewModel viewModel(*app, desktop);
  const VelmoraMenuBar menuBar(viewModel, desktop);
  EXPECT_THAT(desktop.tray.masks, ElementsAre(true));
  app->setPaused(true);
  EXPECT_THAT(desktop.tray.masks, ElementsAre(true, true));
  Q_EMIT viewModel.changed();
  EXPECT_THAT(desktop.tray.masks, ElementsAre(true, true));
}

TEST_F(VelmoraMenuBarTest, OffersNoPauseBeforeTheIntroductionIsOver) {
  options.onboardingCompleted = false;
  app = std::make_unique<AppModel>(options);
  MenuBarViewModel viewModel(*app, desktop);
  const VelmoraMenuBar menuBar(viewModel, desktop);
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
  const VelmoraMenuBar menuBar(viewModel, desktop);
  EXPECT_THAT(visibleTexts(menuBar.menu()),
              ElementsAre("Another bridge is serving", "Open Velmora", "Open Permission Settings"));
}

TEST_F(VelmoraMenuBarTest, SaysThatNoPermissionIsNeededWhereNoneIs) {
  startApp();
  MenuBarViewModel viewModel(*app, desktop);
  const VelmoraMenuBar menuBar(viewModel, desktop);
  const auto* panes = entry(menuBar.menu(), "Open Permission Settings")->menu();
  ASSERT_NE(panes, nullptr);
  EXPECT_THAT(visibleTexts(*panes), ElementsAre("Fake needs no permission"));
  EXPECT_FALSE(panes->actions()[0]->isEnabled());
}

TEST_F(VelmoraMenuBarTest, OffersThePanesOfTerminalApp) {
  desktop.context.terminal = GuidedTerminal::terminalApp;
  startApp();
  MenuBarViewModel viewModel(*app, desktop);
  const VelmoraMenuBar menuBar(viewModel, desktop);
  const auto* panes = entry(menuBar.menu(), "Open Permission Settings")->menu();
  ASSERT_NE(panes, nullptr);
  EXPECT_THAT(visibleTexts(*panes), ElementsAre("Accessibility", "Automation", "Screen Recording"));
  entry(*panes, "Automation")->trigger();
  EXPECT_THAT(desktop.openedPanes, ElementsAre(SystemSettingsLink::automation));
}

TEST_F(VelmoraMenuBarTest, SpeaksAnotherLanguageWhenItIsToldTo) {
  startApp();
  MenuBarViewModel viewModel(*app, desktop);
  VelmoraMenuBar menuBar(viewModel, desktop);
  const auto korean = Translation::installed(Language::korean);
  menuBar.retranslate();
  QLocale::setDefault(QLocale::system());
  EXPECT_THAT(visibleTexts(menuBar.menu()), ElementsAre("MCP 활성", "클라이언트: 0", "관리형 세션: 2",
                                                        "변경 일시 중지", "Velmora 열기", "권한 설정 열기"));
  const auto* panes = entry(menuBar.menu(), "권한 설정 열기")->menu();
  EXPECT_THAT(visibleTexts(*panes), ElementsAre("Fake에는 권한이 필요하지 않습니다"));
}

}  // namespace
}  // namespace velmora
