// The seam to AppleScript: a script that is compiled once and whose handlers can be called, where it runs and
// as the adapter sees it.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace velmora {

/// One argument of a handler: an AppleScript text, integer or boolean.
using ScriptArgument = std::variant<std::string, std::int32_t, bool>;

/// A value that a handler returned, as an Apple event descriptor reads it. Each reading is the system's own
/// conversion, so text that spells a number has an integer too; what cannot be converted reads as nothing. A
/// missing value is a ScriptDescriptor without content.
struct ScriptDescriptor {
  std::string text{};
  std::int32_t integer = 0;
  bool boolean = false;
  std::vector<ScriptDescriptor> items{};  ///< Of a list, in order.
};

/// A handler that ended with an error. The error's text stays behind: it is in the system's language.
struct ScriptFailure {
  std::optional<std::int64_t> number{};  ///< Absent when the system gave none.
};

using ScriptReply = std::variant<ScriptDescriptor, ScriptFailure>;

/// What the system answers when it is asked whether this process may send Apple events to an application: 0,
/// or one of these.
namespace consentStatus {
inline constexpr std::int64_t granted = 0;
inline constexpr std::int64_t denied = -1743;    // errAEEventNotPermitted
inline constexpr std::int64_t notAsked = -1744;  // errAEEventWouldRequireUserConsent
inline constexpr std::int64_t notRunning =
    -600;  // procNotFound: nothing is known of an application that does not run
}  // namespace consentStatus

/// AppleScript itself. For one thread, on macOS the main one of a process with an application object: other
/// threads are reported to wait for ever.
class ScriptEngine {
 public:
  virtual ~ScriptEngine() = default;

  /// Takes `source` (UTF-8) as the script. False when it does not compile.
  virtual bool compile(const std::string& source) = 0;

  /// Calls a handler of the compiled script with positional arguments and waits for its end.
  virtual ScriptReply call(const std::string& handler, const std::vector<ScriptArgument>& arguments) = 0;

  /// Whether this process may send Apple events to the application with this bundle identifier, as
  /// consentStatus. With `asksUser` a user who has not decided yet is asked, and the call waits for them; the
  /// system takes its question away after two minutes.
  virtual std::int32_t consent(const std::string& bundleIdentifier, bool asksUser) = 0;
};

/// The system's AppleScript. Only on macOS.
std::unique_ptr<ScriptEngine> systemScriptEngine();

/// A script as its adapter uses it: every call ends. One call at a time, from whichever thread; `cancel` may
/// come at any time.
class ScriptHost {
 public:
  using Deadline = std::chrono::steady_clock::time_point;

  virtual ~ScriptHost() = default;

  /// Takes `source` (UTF-8) as the script. False when it does not compile.
  virtual bool compile(const std::string& source) = 0;

  /// As ScriptEngine. A call that has not ended by `deadline` is broken off and fails with errAETimeout
  /// (-1712): what it was to do may have been done, or not.
  virtual ScriptReply call(const std::string& handler, const std::vector<ScriptArgument>& arguments,
                           Deadline deadline) = 0;

  /// As ScriptEngine; any other number when the system could not be asked in time.
  virtual std::int64_t consent(const std::string& bundleIdentifier, bool asksUser, Deadline deadline) = 0;

  /// For shutdown: ends the call under way and every later one with userCanceledErr (-128).
  virtual void cancel() noexcept = 0;
};

}  // namespace velmora
