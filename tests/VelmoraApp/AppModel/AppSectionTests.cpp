#include <gtest/gtest.h>

#include "VelmoraApp/AppModel/AppSection.h"

namespace velmora {
namespace {

TEST(AppSection, TheTableHasEverySectionInItsOrder) {
  std::size_t index = 0;
  for (const auto& entry : enumCases<AppSection>) EXPECT_EQ(appSections.at(index++).section, entry.value);
  EXPECT_EQ(index, appSections.size());
  EXPECT_STREQ(appSections[0].title, "Dashboard");
  EXPECT_EQ(appSections[2].symbol, "clock.arrow.circlepath");
}

}  // namespace
}  // namespace velmora
