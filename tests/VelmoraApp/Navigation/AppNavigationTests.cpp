#include "VelmoraApp/Navigation/AppNavigation.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

class AppNavigationTest : public testing::AppFixture {};

TEST_F(AppNavigationTest, StartsWithTheDashboardAndKeepsAnEarlierChoice) {
  app = std::make_unique<AppModel>(options);
  AppNavigation first(*app);
  EXPECT_EQ(first.selectedSection(), "dashboard");
  EXPECT_EQ(app->selectedSection(), AppSection::dashboard);
  first.setSelectedSection("history");
  const AppNavigation second(*app);
  EXPECT_EQ(second.selectedSection(), "history");
  EXPECT_EQ(second.selectedIndex(), 2);
}

TEST_F(AppNavigationTest, SelectsByNameAndByIndexAndFollowsTheModel) {
  app = std::make_unique<AppModel>(options);
  AppNavigation navigation(*app);
  const auto changes = testing::countOf(navigation, &AppNavigation::selectedSectionChanged);
  navigation.setSelectedIndex(1);
  EXPECT_EQ(app->selectedSection(), AppSection::sessions);
  EXPECT_GE(*changes, 1);
  *changes = 0;
  app->selectSection(AppSection::history);
  EXPECT_EQ(navigation.selectedSection(), "history");
  EXPECT_EQ(*changes, 1);
}

TEST_F(AppNavigationTest, RefusesWhatDoesNotExistAndShowsTheSelectionAgain) {
  app = std::make_unique<AppModel>(options);
  AppNavigation navigation(*app);
  const auto changes = testing::countOf(navigation, &AppNavigation::selectedSectionChanged);
  for (const auto* name : {"Dashboard", "nonsense", ""}) navigation.setSelectedSection(name);
  for (const int index : {-1, 5}) navigation.setSelectedIndex(index);
  EXPECT_EQ(navigation.selectedSection(), "dashboard");
  EXPECT_EQ(*changes, 5);
}

}  // namespace
}  // namespace velmora
