// Puts the process into a time zone for the length of a scope.
#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace velmora {

/// Sets TZ and puts it back. For one thread's use at a time.
class LocalTimeZone {
 public:
  explicit LocalTimeZone(const std::string& name) {
    if (const char* value = std::getenv("TZ")) previous_ = value;
    ::setenv("TZ", name.c_str(), 1);
    ::tzset();
  }
  ~LocalTimeZone() {
    if (previous_) {
      ::setenv("TZ", previous_->c_str(), 1);
    } else {
      ::unsetenv("TZ");
    }
    ::tzset();
  }
  LocalTimeZone(const LocalTimeZone&) = delete;
  LocalTimeZone& operator=(const LocalTimeZone&) = delete;

 private:
  std::optional<std::string> previous_;
};

}  // namespace velmora
