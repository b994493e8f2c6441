#include <gtest/gtest.h>

#include "VelmoraApp/AppModel/Texts.h"
#include "tests/support/LocalTimeZone.h"

namespace velmora {
namespace {

TEST(TimeText, IsTheTimeOfDayTodayAndTheDateToo) {
  const LocalTimeZone zone("UTC");
  const auto now = *Date::parseIso8601("2026-11-21T14:05:22Z");
  EXPECT_EQ(timeText(now, now), "14:05:22");
  EXPECT_EQ(timeText(*Date::parseIso8601("2026-11-21T00:00:00Z"), now), "00:00:00");
  EXPECT_EQ(timeText(*Date::parseIso8601("2026-11-20T23:59:59Z"), now), "2026-11-20 23:59:59");
  EXPECT_EQ(timeText(*Date::parseIso8601("2025-11-21T14:05:22Z"), now), "2025-11-21 14:05:22");
}

TEST(TimeText, DropsFractionsTowardsThePast) {
  const LocalTimeZone zone("UTC");
  const auto second = *Date::parseIso8601("2000-01-01T00:00:01Z");  // before the reference date
  EXPECT_EQ(timeText({second.secondsSinceReferenceDate + 0.999}, second), "00:00:01");
}

TEST(TimeText, FollowsTheLocalTimeZone) {
  const LocalTimeZone zone("Asia/Seoul");
  const auto now = *Date::parseIso8601("2026-11-21T14:05:22Z");
  EXPECT_EQ(timeText(now, now), "23:05:22");
  EXPECT_EQ(timeText(*Date::parseIso8601("2026-11-21T15:00:00Z"), now), "2026-11-22 00:00:00");
}

}  // namespace
}  // namespace velmora
