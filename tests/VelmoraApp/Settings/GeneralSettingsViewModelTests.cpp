#include <QtCore/QLocale>

#include "VelmoraApp/AppModel/Translation.h"
#include "VelmoraApp/Settings/GeneralSettingsViewModel.h"
#include "VelmoraApp/Settings/PrivacySettingsViewModel.h"
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
                                     .language = language,
                                     .launchAtLogin = launchAtLogin,
                                     .updater = [this]() -> UpdaterService& { return updater; }});
  }

  testing::FakeDesktop desktop{QString::fromStdString((directory / "defaults.ini").string())};
  MenuBarPreference menuBar{desktop.defaults};
  LanguagePreference language{desktop.defaults, {"en"}};
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

TEST_F(GeneralSettingsViewModelTest, WhatHoldsInWindowsOfAgentsIsStoredOnlyWhenItWasChosen) {
  start();
  EXPECT_TRUE(settings->usesTmux());
  EXPECT_TRUE(settings->shellIntegration());
  EXPECT_FALSE(settings->ownBusyInput());
  settings->setShellIntegration(false);
  ASSERT_TRUE(spinUntil([this] { return !settings->shellIntegration(); }));
  settings->setOwnBusyInput(true);
  ASSERT_TRUE(spinUntil([this] { return settings->ownBusyInput(); }));
  EXPECT_EQ(app->settings().shellIntegration, ShellIntegrationChoice::off);
  EXPECT_EQ(app->settings().allowOwnBusySessionInput, true);
  settings->setShellIntegration(true);
  ASSERT_TRUE(spinUntil([this] { return settings->shellIntegration(); }));
  settings->setOwnBusyInput(false);
  ASSERT_TRUE(spinUntil([this] { return !settings->ownBusyInput(); }));
  EXPECT_EQ(app->settings().shellIntegration, std::nullopt);
  EXPECT_EQ(app->settings().allowOwnBusySessionInput, std::nullopt);
  EXPECT_EQ(settings->settingsProblem(), "");
}

TEST_F(GeneralSettingsViewModelTest, TheSocketOfAnotherTmuxServerIsSaved) {
  start();
  EXPECT_EQ(settings->tmuxSocket(), "");
  settings->setTmuxSocket(" /t/work ");
  ASSERT_TRUE(spinUntil([this] { return settings->tmuxSocket() == "/t/work"; }));
  EXPECT_EQ(app->settings().tmuxSocket, "/t/work");
  show();
  EXPECT_EQ(settings->tmuxSocket(), "/t/work");
  settings->setTmuxSocket("");
  ASSERT_TRUE(spinUntil([this] { return settings->tmuxSocket().isEmpty(); }));
  EXPECT_EQ(app->settings().tmuxSocket, std::nullopt);
}

TEST_F(GeneralSettingsViewModelTest, WhatIsNoPathOfASocketIsNamedAndNotSaved) {
  start();
  const auto changes = countOf(*settings, &GeneralSettingsViewModel::tmuxSocketChanged);
  settings->setTmuxSocket("work");
  EXPECT_EQ(settings->settingsProblem(), "The path of a socket has to begin with /.");
  settings->setShellIntegration(false);
  ASSERT_TRUE(spinUntil([this] { return !settings->shellIntegration(); }));
  EXPECT_EQ(app->settings().tmuxSocket, std::nullopt);
  EXPECT_EQ(*changes, 0) << "what was typed would be lost";
  settings->setTmuxSocket("work");
  settings->setTmuxSocket(" ");
  EXPECT_EQ(settings->settingsProblem(), "");
  EXPECT_EQ(*changes, 1) << "the field shows the blank no longer";
}

TEST_F(GeneralSettingsViewModelTest, EachPageSaysWhichOfItsOwnChangesWereNotSaved) {
  start();
  PrivacySettingsViewModel privacy(*app);
  std::filesystem::remove_all(settingsFile().parent_path());
  testing::writeFile(settingsFile().parent_path(), "a file where the folder should be");
  privacy.setRetentionDays(30);
  ASSERT_TRUE(spinUntil([&] { return !privacy.problem().isEmpty(); }));
  EXPECT_EQ(settings->settingsProblem(), "");
  privacy.dismissProblem();
  settings->setShellIntegration(false);
  ASSERT_TRUE(spinUntil([this] { return !settings->settingsProblem().isEmpty(); }));
  EXPECT_EQ(privacy.problem(), "");
  EXPECT_TRUE(settings->settingsProblem().startsWith("The change could not be saved. "));
  {
    const auto korean = Translation::installed(Language::korean);
    EXPECT_FALSE(settings->settingsProblem().contains("The change could not be saved."));
  }
  QLocale::setDefault(QLocale::system());
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
  EXPECT_FALSE(settings->usesTmux());
}

}  // namespace
}  // namespace velmora
