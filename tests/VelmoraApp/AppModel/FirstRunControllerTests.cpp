#include "VelmoraApp/AppModel/FirstRunController.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

TEST(FirstRunController, AsksForTheIntroductionUntilItIsCompletedOnce) {
  const TemporaryDirectory directory;
  IniFileDefaults defaults(QString::fromStdString((directory / "some.conf").string()));
  FirstRunController first(defaults);
  EXPECT_TRUE(first.needsOnboarding());
  const auto changes = testing::countOf(first, &FirstRunController::needsOnboardingChanged);
  first.complete(SessionPolicy::selective);
  EXPECT_FALSE(first.needsOnboarding());
  EXPECT_EQ(*changes, 1);
  EXPECT_TRUE(defaults.boolean("onboardingCompleted", false));
  EXPECT_EQ(defaults.text("sessionPolicy"), "selective");

  FirstRunController later(defaults);
  EXPECT_FALSE(later.needsOnboarding());
  later.complete(SessionPolicy::safe);
  EXPECT_EQ(defaults.text("sessionPolicy"), "safe");
}

}  // namespace
}  // namespace velmora
