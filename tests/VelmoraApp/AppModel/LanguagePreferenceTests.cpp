#include <gtest/gtest.h>

#include "VelmoraApp/AppModel/LanguagePreference.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

class LanguagePreferenceTest : public ::testing::Test {
 protected:
  TemporaryDirectory directory;
  QString file = QString::fromStdString((directory / "defaults.ini").string());
  IniFileDefaults defaults{file};
};

TEST_F(LanguagePreferenceTest, FollowsTheSystemUntilTheUserChooses) {
  EXPECT_EQ(LanguagePreference(defaults, {"ko-KR"}).language(), Language::korean);
  LanguagePreference preference(defaults, {"de-DE", "ko-KR"});
  EXPECT_EQ(preference.choice(), std::nullopt);
  EXPECT_EQ(preference.language(), Language::english);
  preference.setChoice(Language::korean);
  EXPECT_EQ(preference.language(), Language::korean);
  preference.setChoice(std::nullopt);
  EXPECT_EQ(preference.language(), Language::english);
}

TEST_F(LanguagePreferenceTest, IsKeptAsTheCodeOrTheWordSystem) {
  LanguagePreference preference(defaults, {"en"});
  preference.setChoice(Language::korean);
  EXPECT_EQ(defaults.text("language"), "ko");
  EXPECT_EQ(LanguagePreference(defaults, {"en"}).language(), Language::korean);
  preference.setChoice(std::nullopt);
  EXPECT_EQ(defaults.text("language"), "system");
}

TEST_F(LanguagePreferenceTest, TellsOfEachChangeOnce) {
  LanguagePreference preference(defaults, {"en"});
  const auto changes = testing::countOf(preference, &LanguagePreference::changed);
  preference.setChoice(std::nullopt);
  EXPECT_EQ(*changes, 0);
  preference.setChoice(Language::english);
  preference.setChoice(Language::english);
  EXPECT_EQ(*changes, 1);
}

TEST_F(LanguagePreferenceTest, TakesAWordThatItDoesNotKnowForTheSystem) {
  defaults.set("language", QString("tlh"));
  EXPECT_EQ(LanguagePreference(defaults, {"ko"}).language(), Language::korean);
}

}  // namespace
}  // namespace velmora
