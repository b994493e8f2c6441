#include <gtest/gtest.h>

#include "BridgeCore/Reading.h"

namespace velmora {
namespace {

TEST(OutputLimiter, KeepsTheEnd) {
  EXPECT_EQ(OutputLimiter::suffix("abcdef", 3), (LimitedOutput{"def", 6}));
  EXPECT_EQ(OutputLimiter::suffix("abcdef", 6), (LimitedOutput{"abcdef", 6}));
  EXPECT_EQ(OutputLimiter::suffix("abcdef", 7), (LimitedOutput{"abcdef", 6}));
  EXPECT_EQ(OutputLimiter::suffix("abcdef", 0), (LimitedOutput{"", 6}));
  EXPECT_EQ(OutputLimiter::suffix("abcdef", -1), (LimitedOutput{"", 6}));
  EXPECT_EQ(OutputLimiter::suffix("", 5), (LimitedOutput{"", 0}));
}

TEST(OutputLimiter, KnowsWhetherItCut) {
  EXPECT_TRUE(OutputLimiter::suffix("abcdef", 3).truncated());
  EXPECT_FALSE(OutputLimiter::suffix("abcdef", 6).truncated());
}

TEST(OutputLimiter, CutsBetweenCharactersAsPeopleSeeThem) {
  EXPECT_EQ(OutputLimiter::suffix("ab👩‍👩‍👧‍👦", 1),
            (LimitedOutput{"👩‍👩‍👧‍👦", 3}));
  EXPECT_EQ(OutputLimiter::suffix("a\r\nb", 2), (LimitedOutput{"\r\nb", 3}));
  EXPECT_EQ(OutputLimiter::suffix("x\u1112\u1161\u11ab", 1), (LimitedOutput{"\u1112\u1161\u11ab", 2}));
}

}  // namespace
}  // namespace velmora
