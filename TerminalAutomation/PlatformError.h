// A failure of the terminal's own automation: a domain and a number. Upstream only the number decides what
// the client is told.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace velmora {

class PlatformError : public std::runtime_error {
 public:
  PlatformError(std::string domain, std::int64_t code, const std::string& description = {})
      : std::runtime_error(description), domain_(std::move(domain)), code_(code) {}

  const std::string& domain() const { return domain_; }
  std::int64_t code() const { return code_; }

 private:
  std::string domain_;
  std::int64_t code_;
};

/// The numbers that have a meaning of their own; they are Apple event errors (MacErrors.h).
namespace platformErrorCode {
inline constexpr std::int64_t userCancelled = -128;      // userCanceledErr
inline constexpr std::int64_t notPermitted = -1743;      // errAEEventNotPermitted
inline constexpr std::int64_t notRunning = -600;         // procNotFound
inline constexpr std::int64_t noSuchObject = -1728;      // errAENoSuchObject
inline constexpr std::int64_t eventNotHandled = -1708;   // errAEEventNotHandled
inline constexpr std::int64_t connectionInvalid = -609;  // connectionInvalid
inline constexpr std::int64_t timedOut = -1712;          // errAETimeout
inline constexpr std::int64_t scriptError = -2700;       // errOSAGeneralError
}  // namespace platformErrorCode

}  // namespace velmora
