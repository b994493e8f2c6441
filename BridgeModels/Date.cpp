#include "BridgeModels/Date.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace velmora {

namespace {

// Seconds from 1970-01-01T00:00:00Z to 2001-01-01T00:00:00Z.
constexpr double referenceDateUnixSeconds = 978307200;
constexpr double secondsPerDay = 86400;

// A cursor over the text of a date: each step takes what it expects or leaves the cursor failed.
class DateText {
 public:
  explicit DateText(std::string_view text) : rest_(text) {}

  bool failed() const { return failed_; }
  bool atEnd() const { return rest_.empty(); }
  bool nextIs(char expected) const { return !rest_.empty() && rest_.front() == expected; }

  void take(char expected) {
    if (!nextIs(expected)) return fail();
    rest_.remove_prefix(1);
  }

  int takeDigits(std::size_t count) {
    if (rest_.size() < count) return fail(), 0;
    int value = 0;
    const auto* end = rest_.data() + count;
    const auto [stop, error] = std::from_chars(rest_.data(), end, value);
    if (error != std::errc{} || stop != end || rest_.front() == '-') return fail(), 0;
    rest_.remove_prefix(count);
    return value;
  }

  double takeFraction() {
    double value = 0;
    double unit = 0.1;
    if (rest_.empty() || rest_.front() < '0' || rest_.front() > '9') fail();
    for (; !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9'; rest_.remove_prefix(1)) {
      value += unit * (rest_.front() - '0');
      unit /= 10;
    }
    return value;
  }

  // Seconds to the east of UTC.
  int takeOffset() {
    if (nextIs('Z')) return take('Z'), 0;
    const int sign = nextIs('-') ? -1 : 1;
    take(sign < 0 ? '-' : '+');
    const int hours = takeDigits(2);
    if (nextIs(':')) take(':');
    const int minutes = takeDigits(2);
    if (hours > 23 || minutes > 59) fail();
    return sign * (hours * 3600 + minutes * 60);
  }

 private:
  void fail() { failed_ = true; }

  std::string_view rest_;
  bool failed_ = false;
};

}  // namespace

Date Date::now() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return fromUnixSeconds(std::chrono::duration<double>(sinceEpoch).count());
}

Date Date::fromUnixSeconds(double seconds) { return {seconds - referenceDateUnixSeconds}; }

double Date::unixSeconds() const { return secondsSinceReferenceDate + referenceDateUnixSeconds; }

std::string Date::toIso8601() const {
  const double seconds = std::floor(unixSeconds());
  // Years 0 to 9999; the comparison is also false for NaN.
  if (!(seconds >= -62167219200.0 && seconds < 253402300800.0)) {
    throw std::range_error("date outside the years 0 to 9999");
  }
  using namespace std::chrono;
  const double dayCount = std::floor(seconds / secondsPerDay);
  const year_month_day date{sys_days{days{static_cast<int>(dayCount)}}};
  const int second = static_cast<int>(seconds - dayCount * secondsPerDay);
  std::array<char, 40> text{};
  const int length =
      std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                    static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), second / 3600,
                    second / 60 % 60, second % 60);
  return std::string(text.data(), static_cast<std::size_t>(length));
}

std::string Date::toIso8601WithMilliseconds() const {
  const auto milliseconds = std::floor(unixSeconds() * 1000);
  const auto seconds = std::floor(milliseconds / 1000);
  auto text = fromUnixSeconds(seconds).toIso8601();
  const auto digits = std::to_string(1000 + static_cast<int>(milliseconds - seconds * 1000)).substr(1);
  return text.insert(text.size() - 1, "." + digits);
}

std::optional<Date> Date::parseIso8601(std::string_view text) {
  using namespace std::chrono;
  DateText cursor(text);
  const int yearNumber = cursor.takeDigits(4);
  cursor.take('-');
  const int monthNumber = cursor.takeDigits(2);
  cursor.take('-');
  const int dayNumber = cursor.takeDigits(2);
  cursor.take('T');
  const int hour = cursor.takeDigits(2);
  cursor.take(':');
  const int minute = cursor.takeDigits(2);
  cursor.take(':');
  const int second = cursor.takeDigits(2);
  double fraction = 0;
  if (cursor.nextIs('.')) {
    cursor.take('.');
    fraction = cursor.takeFraction();
  }
  const int offset = cursor.takeOffset();
  const year_month_day date{year{yearNumber}, month{static_cast<unsigned>(monthNumber)},
                            day{static_cast<unsigned>(dayNumber)}};
  if (cursor.failed() || !cursor.atEnd() || !date.ok() || hour > 23 || minute > 59 || second > 59) {
    return std::nullopt;
  }
  const double dayCount = static_cast<double>(sys_days{date}.time_since_epoch().count());
  return fromUnixSeconds(dayCount * secondsPerDay + hour * 3600 + minute * 60 + second - offset + fraction);
}

}  // namespace velmora
