#include <gtest/gtest.h>

#include <limits>

#include "BridgeModels/Calendar.h"
#include "tests/support/LocalTimeZone.h"

namespace velmora {
namespace {

Date at(const char* text) { return Date::parseIso8601(text).value(); }

TEST(Calendar, KeepsTheTimeOfDayWhenClocksGoForward) {
  const LocalTimeZone zone("America/New_York");
  EXPECT_EQ(daysBefore(at("2026-03-10T12:00:00-04:00"), 7), at("2026-03-03T12:00:00-05:00"));
  EXPECT_EQ(daysBefore(at("2026-03-08T12:00:00-04:00"), 1), at("2026-03-07T12:00:00-05:00"));
}

TEST(Calendar, KeepsTheTimeOfDayWhenClocksGoBack) {
  const LocalTimeZone zone("America/New_York");
  EXPECT_EQ(daysBefore(at("2026-11-03T00:30:00-05:00"), 7), at("2026-10-27T00:30:00-04:00"));
  EXPECT_EQ(daysBefore(at("2026-11-01T23:59:59-05:00"), 1), at("2026-10-31T23:59:59-04:00"));
}

TEST(Calendar, ATimeOfDayThatWasSkippedIsAnHourOff) {
  const LocalTimeZone zone("America/New_York");
  EXPECT_EQ(daysBefore(at("2026-03-09T02:30:00-04:00"), 1), at("2026-03-08T03:30:00-04:00"));
  EXPECT_EQ(daysBefore(at("2027-01-01T02:30:00-05:00"), 299), at("2026-03-08T01:30:00-05:00"));
}

TEST(Calendar, OfATimeThatCameTwiceItTakesTheSideOfTheDate) {
  const LocalTimeZone zone("America/New_York");
  EXPECT_EQ(daysBefore(at("2026-11-02T01:30:00-05:00"), 1), at("2026-11-01T01:30:00-05:00"));
  EXPECT_EQ(daysBefore(at("2027-06-01T01:30:00-04:00"), 212), at("2026-11-01T01:30:00-04:00"));
}

TEST(Calendar, FollowsAZoneThatChangesWhileTheProgramRuns) {
  const Date now = at("2026-03-10T12:00:00Z");
  {
    const LocalTimeZone zone("Asia/Seoul");
    EXPECT_EQ(daysBefore(now, 7), at("2026-03-03T12:00:00Z"));
  }
  const LocalTimeZone zone("America/New_York");
  EXPECT_EQ(daysBefore(now, 7), at("2026-03-03T13:00:00Z"));
}

TEST(Calendar, CountsPlainDaysWhereClocksNeverChange) {
  const LocalTimeZone zone("Asia/Seoul");
  EXPECT_EQ(daysBefore(at("2026-03-10T09:00:00+09:00"), 365), at("2025-03-10T09:00:00+09:00"));
  EXPECT_EQ(daysBefore(at("2024-03-01T00:00:00+09:00"), 1), at("2024-02-29T00:00:00+09:00"));
  EXPECT_EQ(daysBefore(at("2026-03-10T09:00:00+09:00"), 0), at("2026-03-10T09:00:00+09:00"));
}

TEST(Calendar, KeepsTheFractionOfASecond) {
  const LocalTimeZone zone("America/New_York");
  EXPECT_EQ(daysBefore(Date{817000000.0009765625}, 1), Date{817000000.0009765625 - 86400});
  EXPECT_EQ(daysBefore(Date{817000000.9990234375}, 1), Date{817000000.9990234375 - 86400});
}

TEST(Calendar, AnswersTheDistantPastWhenThereIsNoSuchDay) {
  const auto now = at("2026-11-21T07:26:00Z");
  const auto distantPast = at("0001-01-01T00:00:00Z");
  for (const std::int64_t days : {std::int64_t{2'000'000}, std::int64_t{2'000'000'000}, std::int64_t{1} << 40,
                                  std::numeric_limits<std::int64_t>::max()}) {
    EXPECT_EQ(daysBefore(now, days), distantPast);
  }
  EXPECT_EQ(daysBefore(Date{-std::numeric_limits<double>::infinity()}, 1), distantPast);
  EXPECT_EQ(daysBefore(Date{std::numeric_limits<double>::quiet_NaN()}, 1), distantPast);
}

}  // namespace
}  // namespace velmora
