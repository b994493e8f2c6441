#include <gtest/gtest.h>

#include "System/ProgramVersion.h"

namespace velmora {
namespace {

using Version = std::optional<std::pair<int, int>>;

TEST(ProgramVersionTests, readsTheFirstTwoNumbers) {
  EXPECT_EQ(versionNumbers("3.3a"), Version({3, 3}));
  EXPECT_EQ(versionNumbers("tmux 3.10"), Version({3, 10}));
  EXPECT_EQ(versionNumbers("tmux next-3.8"), Version({3, 8}));
  EXPECT_EQ(versionNumbers("1.2.3"), Version({1, 2}));
}

TEST(ProgramVersionTests, aMissingSecondNumberIsZero) {
  EXPECT_EQ(versionNumbers("4"), Version({4, 0}));
  EXPECT_EQ(versionNumbers("4."), Version({4, 0}));
  EXPECT_EQ(versionNumbers("4-rc"), Version({4, 0}));
}

TEST(ProgramVersionTests, aTextWithoutAReadableNumberHasNoVersion) {
  EXPECT_EQ(versionNumbers("tmux master"), std::nullopt);
  EXPECT_EQ(versionNumbers(""), std::nullopt);
  EXPECT_EQ(versionNumbers("99999999999999999999"), std::nullopt);
}

}  // namespace
}  // namespace velmora
