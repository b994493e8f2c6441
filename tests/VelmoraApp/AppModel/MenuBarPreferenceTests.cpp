#include <gtest/gtest.h>

#include "VelmoraApp/AppModel/MenuBarPreference.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

class MenuBarPreferenceTest : public ::testing::Test {
 protected:
  QString file() { return QString::fromStdString((directory / "defaults.ini").string()); }

  TemporaryDirectory directory;
  IniFileDefaults defaults{file()};
  MenuBarPreference preference{defaults};
};

TEST_F(MenuBarPreferenceTest, ShowsUnlessThePersonSaysOtherwise) {
  EXPECT_TRUE(preference.menuBarEnabled());
  EXPECT_FALSE(preference.shows()) << "no place yet";
  preference.setHasPlace(true);
  EXPECT_TRUE(preference.shows());
  preference.setMenuBarEnabled(false);
  EXPECT_FALSE(preference.shows());
}

TEST_F(MenuBarPreferenceTest, TellsOfEachChangeOnce) {
  const auto changes = testing::countOf(preference, &MenuBarPreference::changed);
  preference.setMenuBarEnabled(true);
  preference.setHasPlace(false);
  EXPECT_EQ(*changes, 0);
  preference.setMenuBarEnabled(false);
  preference.setHasPlace(true);
  EXPECT_EQ(*changes, 2);
}

TEST_F(MenuBarPreferenceTest, IsRemembered) {
  preference.setMenuBarEnabled(false);
  IniFileDefaults later(file());
  EXPECT_FALSE(MenuBarPreference(later).menuBarEnabled());
}

}  // namespace
}  // namespace velmora
