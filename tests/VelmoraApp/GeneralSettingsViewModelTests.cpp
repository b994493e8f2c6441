#include "VelmoraApp/Settings/GeneralSettingsViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/FakeServices.h"

namespace velmora {
namespace {

using testing::countOf;
using testing::spinUntil;

class GeneralSettingsViewModelTest : public testing::AppFixture {
 protected:
  void start() {
    startApp();
    settings = std::make_unique<GeneralSettingsViewModel>(
        *app,
        GeneralSettingsSources{.menuBar = menuBar,
                               .launchAtLogin = launchAtLogin,
                               .updater = [this]() -> UpdaterService& { return updater; },
                               .openPane = [this](SystemSettingsLink link) { opened.push_back(link); }});
  }

  UserDefaults defaults{QString::fromStdString((directory / "defaults.ini").string())};
  MenuBarPreference menuBar{defaults};
  bool refuses = false;
  LaunchAtLoginController launchAtLogin{std::make_unique<testing::FakeLoginItem>(refuses)};
  UpdaterService updater{std::make_unique<testing::FakeUpdater>(std::nullopt), time.clock()};
  std::vector<SystemSettingsLink> opened;
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
  EXPECT_TRUE(opened.empty());
}

}  // namespace
}  // namespace velmora
