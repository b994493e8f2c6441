#include "BridgeModels/Calendar.h"

#include <unicode/gregocal.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace velmora {

namespace {

constexpr Date distantPast{-63113904000.0};  // 0001-01-01T00:00:00Z

}  // namespace

Date daysBefore(Date date, std::int64_t days) {
  constexpr std::int64_t mostDays = std::numeric_limits<int32_t>::max();
  if (days < -mostDays || days > mostDays) return distantPast;
  UErrorCode status = U_ZERO_ERROR;
  icu::GregorianCalendar calendar(status);
  if (U_FAILURE(status)) throw std::runtime_error(std::string("ICU: ") + u_errorName(status));
  const double now = std::floor(date.unixSeconds() * 1000);
  calendar.setTime(now, status);
  calendar.add(UCAL_DATE, static_cast<int32_t>(-days), status);
  const double then = calendar.getTime(status);
  // Lenient calendars stop at their limits instead of failing.
  const auto isFormed =
      U_SUCCESS(status) && std::abs(now - then - static_cast<double>(days) * 86'400'000) < 200'000'000;
  if (!isFormed) return distantPast;
  return std::max(Date{date.secondsSinceReferenceDate - (now - then) / 1000}, distantPast);
}

}  // namespace velmora
