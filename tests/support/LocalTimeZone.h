// Puts the process into a time zone for the length of a scope.
#pragma once

#include <unicode/timezone.h>

#include <cstdlib>
#include <ctime>
#include <memory>
#include <optional>
#include <string>

namespace velmora {

/// Sets TZ, for the C library and for ICU, and puts it back. For one thread's use at a time.
class LocalTimeZone {
 public:
  explicit LocalTimeZone(const std::string& name) {
    if (const char* value = std::getenv("TZ")) previous_ = value;
    ::setenv("TZ", name.c_str(), 1);
    detect();
  }
  ~LocalTimeZone() {
    if (previous_) {
      ::setenv("TZ", previous_->c_str(), 1);
    } else {
      ::unsetenv("TZ");
    }
    detect();
  }
  LocalTimeZone(const LocalTimeZone&) = delete;
  LocalTimeZone& operator=(const LocalTimeZone&) = delete;

 private:
  static void detect() {
    ::tzset();
    icu::TimeZone::adoptDefault(icu::TimeZone::detectHostTimeZone());
  }

  std::optional<std::string> previous_;
};

}  // namespace velmora
