#include <gtest/gtest.h>

#include <stdexcept>

#include "BridgeModels/Date.h"

namespace velmora {
namespace {

TEST(Date, WritesWholeSecondsInUtc) {
  EXPECT_EQ(Date{0}.toIso8601(), "2001-01-01T00:00:00Z");
  EXPECT_EQ(Date{817000000.999}.toIso8601(), "2026-11-22T00:26:40Z");
  EXPECT_EQ(Date{-0.5}.toIso8601(), "2000-12-31T23:59:59Z");
}

TEST(Date, CutsMillisecondsTowardsThePast) {
  EXPECT_EQ(Date{0.9999}.toIso8601WithMilliseconds(), "2001-01-01T00:00:00.999Z");
  EXPECT_EQ(Date{-0.25}.toIso8601WithMilliseconds(), "2000-12-31T23:59:59.750Z");
  EXPECT_EQ(Date{785999999.25}.toIso8601WithMilliseconds(), "2025-11-28T05:19:59.250Z");
  EXPECT_THROW(Date{1e18}.toIso8601WithMilliseconds(), std::range_error);
}

TEST(Date, ReadsWhatItWrites) {
  for (const double seconds : {0.0, 817000000.0, -978307200.0, 94694400.0, -1.0}) {
    EXPECT_EQ(Date::parseIso8601(Date{seconds}.toIso8601()), Date{seconds}) << seconds;
  }
}

TEST(Date, ReadsOffsetsAndFractions) {
  EXPECT_EQ(Date::parseIso8601("2001-01-01T09:00:00+09:00"), Date{0});
  EXPECT_EQ(Date::parseIso8601("2000-12-31T19:00:00-0500"), Date{0});
  EXPECT_EQ(Date::parseIso8601("2001-01-01T00:00:00.5Z"), Date{0.5});
}

TEST(Date, RefusesWhatIsNoDate) {
  for (const auto* text : {"", "2001-01-01", "2001-01-01T00:00:00", "2001-13-01T00:00:00Z",
                           "2001-02-29T00:00:00Z", "2001-01-01T24:00:00Z", "2001-01-01T00:60:00Z",
                           "2001-01-01T00:00:00Zx", "2001-01-01 00:00:00Z", "-001-01-01T00:00:00Z",
                           "2001-01-01T00:00:00.Z", "2001-01-01T00:00:00+25:00", "2001-1-01T00:00:00Z"}) {
    EXPECT_EQ(Date::parseIso8601(text), std::nullopt) << text;
  }
}

TEST(Date, RefusesToWriteYearsOfMoreThanFourDigits) {
  EXPECT_THROW(Date{1e18}.toIso8601(), std::range_error);
  EXPECT_THROW(Date{-1e18}.toIso8601(), std::range_error);
  EXPECT_EQ(Date::parseIso8601("9999-12-31T23:59:59Z")->toIso8601(), "9999-12-31T23:59:59Z");
  EXPECT_EQ(Date::parseIso8601("0000-01-01T00:00:00Z")->toIso8601(), "0000-01-01T00:00:00Z");
}

}  // namespace
}  // namespace velmora
