#include <gtest/gtest.h>

#include "VelmoraApp/AppModel/UserDefaults.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

TEST(UserDefaults, AnswerWhatIsAbsentAndKeepWhatIsSet) {
  const TemporaryDirectory directory;
  const auto file = QString::fromStdString((directory / "some.conf").string());
  {
    UserDefaults defaults(file);
    EXPECT_FALSE(defaults.boolean("onboardingCompleted", false));
    EXPECT_TRUE(defaults.boolean("menuBarEnabled", true));
    EXPECT_EQ(defaults.text("sessionPolicy"), "");
    defaults.set("onboardingCompleted", true);
    defaults.set("menuBarEnabled", false);
    defaults.set("sessionPolicy", QString("selective"));
  }
  const UserDefaults again(file);
  EXPECT_TRUE(again.boolean("onboardingCompleted", false));
  EXPECT_FALSE(again.boolean("menuBarEnabled", true));
  EXPECT_EQ(again.text("sessionPolicy"), "selective");
}

TEST(UserDefaults, LieWhereTheSystemKeepsConfiguration) {
  const TemporaryDirectory directory;
  const auto home = directory.path().string();
  UserDefaults::standard({{"HOME", home}, {"XDG_CONFIG_HOME", home + "/config"}}).set("menuBarEnabled", true);
  EXPECT_EQ(testing::contentOf(directory / "config/Velmora/Velmora.conf"),
            "[General]\nmenuBarEnabled=true\n");
  UserDefaults::standard({{"HOME", home}}).set("menuBarEnabled", false);
  EXPECT_EQ(testing::contentOf(directory / ".config/Velmora/Velmora.conf"),
            "[General]\nmenuBarEnabled=false\n");
  UserDefaults::standard({{"HOME", home + "/other"}, {"XDG_CONFIG_HOME", "relative"}})
      .set("menuBarEnabled", true);
  EXPECT_TRUE(std::filesystem::exists(directory / "other/.config/Velmora/Velmora.conf"));
}

TEST(UserDefaults, LieNowhereWithoutAHome) {
  EXPECT_THROW(UserDefaults::standard({}), std::runtime_error);
  EXPECT_THROW(UserDefaults::standard({{"HOME", "relative"}}), std::runtime_error);
}

}  // namespace
}  // namespace velmora
