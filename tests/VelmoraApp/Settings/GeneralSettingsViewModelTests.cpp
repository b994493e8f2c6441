#include "VelmoraApp/Settings/GeneralSettingsViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/FakeDesktop.h"

namespace velmora {
namespace {

using testing::countOf;
using testing::spinUntil;

class GeneralSettingsViewModelTest : public testing::AppFixture {
 protected:
  void start() {
    startApp();
    show();
  }
  void show() {
    settings = std::make_unique<GeneralSettingsViewModel>(
        *app, GeneralSettingsSources{.desktop = desktop,
                                     .menuBar = menuBar,
                                     .launchAtLogin = launchAtLogin,
                                     .updater = [this]() -> UpdaterService& { return updater; }});
  }

  testing::FakeDesktop desktop{QString::fromStdString((directory / "defaults.ini").string())};
  MenuBarPreference menuBar{desktop.defaults};
  LaunchAtLoginController launchAtLogin{desktop};
  UpdaterService updater{desktop.makeUpdater(), time.clock()};
  std::unique_ptr<GeneralSettingsViewModel> settings;
};

TEST_F(GeneralSettingsViewModelTest, TheMenuBarSwitchTakesEffectAtOnce) {
  start();
  const auto changes = countOf(*settings, &GeneralSettingsViewModel::menuBarChanged);
  EXPECT_TRUE(settings->menuBarEnabled());
  settings->setMenuBarEnabled(false);
  EXPECT_FALSE(menuBar.menuBarEnabled());
  menuBar.setHasPlace(true);
  EXPECT_TRUE(settings->menuBarHasPlace());
  EXPECT_EQ(*changes, 2);
}

TEST_F(GeneralSettingsViewModelTest, ThePermissionsFollowTheStatus) {
  start();
  const auto changes = countOf(*settings, &GeneralSettingsViewModel::permissionsChanged);
  const auto attention = [this] {
    return settings->permissions().at(0).value<PermissionSettingsRow>().attention;
  };
  EXPECT_FALSE(attention());
  terminal->failWith("status", StructuredError{.code = ErrorCode::automationPermissionDenied,
                                               .message = "The folder of tmux is not safe.",
                                               .recoverySuggestion = "Make it yours."});
  andRefresh([this] { app->refreshAll(); });
  ASSERT_TRUE(spinUntil(attention));
  EXPECT_EQ(*changes, 1);
}

TEST_F(GeneralSettingsViewModelTest, ARowWithoutAPaneOpensNothing) {
  start();
  for (const int row : {-1, 0, 1}) settings->openPermission(row);
  EXPECT_TRUE(desktop.openedPanes.empty());
}

TEST_F(GeneralSettingsViewModelTest, ForTerminalAppEachRowOpensItsPane) {
  desktop.context.terminal = GuidedTerminal::terminalApp;
  start();
  ASSERT_EQ(settings->permissions().size(), 3);
  for (const int row : {2, 0, 3, 1}) settings->openPermission(row);
  EXPECT_THAT(desktop.openedPanes,
              ::testing::ElementsAre(SystemSettingsLink::screenRecording, SystemSettingsLink::accessibility,
                                     SystemSettingsLink::automation));
}

TEST_F(GeneralSettingsViewModelTest, TheMenuBarSwitchIsNamedAsThePlaceIsCalled) {
  start();
  EXPECT_EQ(settings->menuBarText(), "Show Velmora in the tray");
  desktop.context.terminal = GuidedTerminal::terminalApp;
  show();
  EXPECT_EQ(settings->menuBarText(), "Show Velmora in the menu bar");
}

}  // namespace
}  // namespace velmora
