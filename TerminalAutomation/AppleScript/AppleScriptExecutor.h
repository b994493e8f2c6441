// The adapter that drives Terminal.app through one compiled AppleScript.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "System/SerialExecutor.h"
#include "TerminalAutomation/AppleScript/AppleScriptOperations.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Thread-safe; the operations run one after another on the adapter's own thread, which alone enters the
/// compiled script. Failures are PlatformErrors with the script's number; AppleScriptOperations says which.
/// An Apple event under way cannot be called back: `cancel` and destruction wait for it, at most as long as
/// the script's own time-outs, and fail what comes after it.
class AppleScriptExecutor final : public TerminalAutomating {
 public:
  using TerminalAutomating::send;

  /// Compiles `source` on the caller's thread, on a Mac the main one, which the system may need for reading
  /// Terminal's dictionary. Throws PlatformError when it does not compile.
  AppleScriptExecutor(AppleScriptParts parts, const std::string& source);
  ~AppleScriptExecutor() override;

  std::string displayName() const override { return "Terminal.app"; }
  std::future<TerminalRuntimeStatus> status() override;
  std::future<std::vector<TerminalTabSnapshot>> listSessions() override;
  std::future<TerminalTabSnapshot> createWindow() override;
  std::future<void> send(std::string command, std::string tty, std::int64_t windowId,
                         bool allowBusy) override;
  std::future<void> send(TerminalKey key, std::int64_t repeatCount, std::string tty, std::int64_t windowId,
                         bool allowBusy) override;
  std::future<TerminalOutput> readOutput(OutputSource source, std::int64_t maxCharacters, std::string tty,
                                         std::int64_t windowId) override;
  std::future<TerminalScreenCapture> captureScreen(std::string tty, std::int64_t windowId) override;
  std::future<void> focus(std::string tty, std::int64_t windowId) override;
  void cancel() noexcept override;

  /// Makes the system ask the person whether Velmora may control Terminal; nothing happens while Terminal
  /// does not run. The answer shows in `status`.
  std::future<void> requestAccess();

  /// The same for System Events, which presses the keys.
  std::future<void> requestSystemEventsAccess();

  /// Closes one window. For tests on a Mac; the bridge itself never closes a window.
  std::future<void> closeTestWindow(std::int64_t windowId);

 private:
  template <class Work>
  auto submit(Work work);

  const AppleScriptParts parts_;
  AppleScriptOperations operations_;  // used on the executor's thread only
  std::atomic<bool> cancelled_ = false;
  SerialExecutor executor_{"applescript"};  // goes first: its thread uses what stands above
};

}  // namespace velmora
