// A point in time as seconds (with fraction) since 2001-01-01T00:00:00Z, so that the number that travels
// in JSON survives a round trip exactly.
#pragma once

#include <compare>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

struct Date {
  double secondsSinceReferenceDate = 0;

  /// The system's clock. Only `main` functions and the bridge host call it; the rest is handed a `Clock`.
  static Date now();

  static Date fromUnixSeconds(double seconds);
  double unixSeconds() const;

  /// "2026-11-21T07:26:00Z": UTC, whole seconds (the fraction is dropped, towards the past).
  /// Throws std::range_error outside the years 0 to 9999.
  std::string toIso8601() const;

  /// "2026-11-21T07:26:00.250Z": the same, cut to the millisecond.
  std::string toIso8601WithMilliseconds() const;

  /// Reads "2026-11-21T07:26:00Z", a numeric offset ("+09:00") in place of Z, and a fraction of a second.
  static std::optional<Date> parseIso8601(std::string_view text);

  auto operator<=>(const Date&) const = default;
};

/// The current time; injected so that tests decide it. Must be thread-safe.
using Clock = std::function<Date()>;

}  // namespace velmora
