// The eight operations through which the bridge reaches a terminal. An adapter knows nothing of session ids,
// permissions or policy: it addresses a tab by its tty and window id and returns raw rows.
//
// Every operation starts at once and hands back a future; the adapter works through them one at a time on its
// own thread. Failures arrive through the future: a PlatformError, or a StructuredError with the adapter's
// own words. An adapter may be shared by any number of threads. Destroying it waits for the operation under
// way.
#pragma once

#include <cstdint>
#include <exception>
#include <future>
#include <string>
#include <vector>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/TerminalOutput.h"
#include "BridgeModels/TerminalSession.h"
#include "BridgeModels/ToolInputs.h"
#include "TerminalAutomation/PlatformError.h"

namespace velmora {

struct TerminalRuntimeStatus {
  bool running = false;
  std::int64_t windowCount = 0;
  AutomationPermission permission = AutomationPermission::unknown;

  bool operator==(const TerminalRuntimeStatus&) const = default;
};

class TerminalAutomating {
 public:
  virtual ~TerminalAutomating() = default;

  /// The terminal's name for screens and messages: "Terminal.app", "tmux".
  virtual std::string displayName() const = 0;

  virtual std::future<TerminalRuntimeStatus> status() = 0;

  /// Every tab, in the order in which the terminal reports them.
  virtual std::future<std::vector<TerminalTabSnapshot>> listSessions() = 0;

  /// Opens a window and returns its one tab.
  virtual std::future<TerminalTabSnapshot> createWindow() = 0;

  /// Types `command` and submits it. Without `allowBusy` a tab that is busy by now is refused.
  virtual std::future<void> send(std::string command, std::string tty, std::int64_t windowId,
                                 bool allowBusy) = 0;

  /// Presses `key` `repeatCount` times. An adapter that cannot press keys inherits the failure.
  virtual std::future<void> send(TerminalKey key, std::int64_t repeatCount, std::string tty,
                                 std::int64_t windowId, bool allowBusy);

  /// The tab's text; at most about `maxCharacters` of its end are wanted. The count in the result is that of
  /// the whole text.
  virtual std::future<TerminalOutput> readOutput(OutputSource source, std::int64_t maxCharacters,
                                                 std::string tty, std::int64_t windowId) = 0;

  /// Writes a picture of the tab to a PNG file of its own.
  virtual std::future<TerminalScreenCapture> captureScreen(std::string tty, std::int64_t windowId) = 0;

  /// Brings the tab to the front.
  virtual std::future<void> focus(std::string tty, std::int64_t windowId) = 0;

  /// For shutdown: ends the operation under way early, and fails it and all later ones.
  virtual void cancel() noexcept {}

  // The same two operations for tabs that must not be busy.
  std::future<void> send(std::string command, std::string tty, std::int64_t windowId) {
    return send(std::move(command), std::move(tty), windowId, /*allowBusy=*/false);
  }
  std::future<void> send(TerminalKey key, std::int64_t repeatCount, std::string tty, std::int64_t windowId) {
    return send(key, repeatCount, std::move(tty), windowId, /*allowBusy=*/false);
  }
};

/// A future that already carries `error`.
template <class Result>
std::future<Result> failedFuture(std::exception_ptr error) {
  std::promise<Result> promise;
  promise.set_exception(std::move(error));
  return promise.get_future();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): what overrides it keeps the text for later
inline std::future<void> TerminalAutomating::send(TerminalKey, std::int64_t, std::string, std::int64_t,
                                                  bool) {
  return failedFuture<void>(std::make_exception_ptr(
      PlatformError("Velmora.Automation", platformErrorCode::eventNotHandled,
                    "Special key input is not supported by this automation adapter.")));
}

}  // namespace velmora
