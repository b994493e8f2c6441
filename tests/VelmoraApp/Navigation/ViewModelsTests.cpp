#include "VelmoraApp/Navigation/ViewModels.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/FakeDesktop.h"

namespace velmora {
namespace {

using testing::countOf;

class ViewModelsTest : public testing::AppFixture {
 protected:
  testing::FakeDesktop desktop{QString::fromStdString((directory / "defaults.ini").string())};
  FirstRunController firstRun{desktop.defaults};
  MenuBarPreference menuBar{desktop.defaults};
  LanguagePreference language{desktop.defaults, {"en"}};
  LaunchAtLoginController launchAtLogin{desktop};
  UpdaterService updater{desktop.makeUpdater(), time.clock()};
};

TEST_F(ViewModelsTest, AnotherLanguageAnnouncesWhyClearingFailedOnEachScreenThatOffersIt) {
  startApp();
  ViewModels viewModels(*app, firstRun,
                        {.desktop = desktop,
                         .menuBar = menuBar,
                         .language = language,
                         .launchAtLogin = launchAtLogin,
                         .updater = [this]() -> UpdaterService& { return updater; }});
  const auto inHistory = countOf(*viewModels.history()->clearing(), &HistoryClearing::problemChanged);
  const auto inSettings =
      countOf(*viewModels.settings()->privacy()->clearing(), &HistoryClearing::problemChanged);
  viewModels.retranslate(Language::english);
  EXPECT_GT(*inHistory, 0);
  EXPECT_GT(*inSettings, 0);
}

}  // namespace
}  // namespace velmora
