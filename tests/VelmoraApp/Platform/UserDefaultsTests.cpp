#include <gtest/gtest.h>

#include "VelmoraApp/Platform/UserDefaults.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

TEST(IniFileDefaults, AnswerWhatIsAbsentAndKeepWhatIsSet) {
  const TemporaryDirectory directory;
  const auto file = QString::fromStdString((directory / "some.conf").string());
  {
    IniFileDefaults defaults(file);
    EXPECT_FALSE(defaults.boolean("onboardingCompleted", false));
    EXPECT_TRUE(defaults.boolean("menuBarEnabled", true));
    EXPECT_EQ(defaults.text("sessionPolicy"), "");
    defaults.set("onboardingCompleted", true);
    defaults.set("menuBarEnabled", false);
    defaults.set("sessionPolicy", QString("selective"));
  }
  const IniFileDefaults again(file);
  EXPECT_TRUE(again.boolean("onboardingCompleted", false));
  EXPECT_FALSE(again.boolean("menuBarEnabled", true));
  EXPECT_EQ(again.text("sessionPolicy"), "selective");
}

}  // namespace
}  // namespace velmora
