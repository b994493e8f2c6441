#include "BridgeModels/Calendar.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace velmora {

namespace {

constexpr Date distantPast{-63113904000.0};  // 0001-01-01T00:00:00Z
constexpr double mostSeconds = 1e11;         // three thousand years
constexpr std::int64_t mostDays = 1'000'000;

/// How many seconds local clocks were ahead of UTC.
std::time_t offsetAt(std::time_t instant) {
  std::tm local{};
  ::localtime_r(&instant, &local);
  return local.tm_gmtoff;
}

}  // namespace

Date daysBefore(Date date, std::int64_t days) {
  const double seconds = std::floor(date.unixSeconds());
  const bool isNear = std::abs(seconds) < mostSeconds;  // infinity and NaN are not
  if (!isNear || days < -mostDays || days > mostDays) return distantPast;
  ::tzset();
  const auto now = static_cast<std::time_t>(seconds);
  const std::time_t then = now - static_cast<std::time_t>(days) * 86'400;
  const std::time_t sameTimeOfDay = then + offsetAt(now) - offsetAt(then);
  return std::max(Date{date.secondsSinceReferenceDate - static_cast<double>(now - sameTimeOfDay)},
                  distantPast);
}

}  // namespace velmora
