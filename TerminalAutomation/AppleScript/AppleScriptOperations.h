// The eight operations on Terminal.app: arguments in, replies read, failures named.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "BridgeModels/Uuid.h"
#include "TerminalAutomation/AppleScript/ScreenCaptureTool.h"
#include "TerminalAutomation/AppleScript/ScreenWindows.h"
#include "TerminalAutomation/AppleScript/ScriptHandlers.h"
#include "TerminalAutomation/AppleScript/ScriptHost.h"
#include "TerminalAutomation/TerminalOperations.h"

namespace velmora {

/// What the adapter works with; tests put their own in place.
struct AppleScriptParts {
  std::unique_ptr<ScriptHost> script;
  /// Whether an application with this bundle identifier runs. Called on the adapter's thread.
  std::function<bool(const std::string& bundleIdentifier)> isRunning;
  /// Starts an application that does not run, without waiting for it. Called on the adapter's thread.
  std::function<void(const std::string& bundleIdentifier)> start;
  /// What is on the screen now. Called on the adapter's thread.
  std::function<ScreenWindows()> screenWindows;
  std::unique_ptr<ProgramRunner> programs;
  std::filesystem::path temporaryDirectory;  ///< Pictures go to Velmora/ in it.
  UuidSource uuid = Uuid::random;
  std::function<void(std::chrono::milliseconds)> pause = [](auto time) { std::this_thread::sleep_for(time); };
};

/// Not thread-safe, but for `cancel`: there is one script. Throws PlatformError with the script's own error
/// number. The script has time-outs of its own; a handler that runs past its deadline is broken off. An
/// integer outside 32 bits and an empty listing stop the process: the first cannot come from an id
/// that the script gave, the second the script promises never to return.
class AppleScriptOperations final : public TerminalOperations {
 public:
  /// Throws PlatformError when `source` does not compile.
  AppleScriptOperations(AppleScriptParts parts, const std::string& source);

  std::string displayName() const override { return "Terminal.app"; }
  bool isSerial() const override { return true; }
  TerminalRuntimeStatus status(Deadline deadline) override;
  std::vector<TerminalTabSnapshot> listSessions(Deadline deadline) override;
  TerminalTabSnapshot createWindow(Deadline deadline) override;
  void sendCommand(const std::string& command, const TabAddress& tab, bool allowBusy,
                   Deadline deadline) override;
  void sendKey(TerminalKey key, std::int64_t repeatCount, const TabAddress& tab, bool allowBusy,
               Deadline deadline) override;
  TerminalOutput readOutput(OutputSource source, std::int64_t maxCharacters, const TabAddress& tab,
                            Deadline deadline) override;
  TerminalScreenCapture captureScreen(const TabAddress& tab, Deadline deadline) override;
  void focus(const TabAddress& tab, Deadline deadline) override;
  void cancel() noexcept override;

  void closeWindow(std::int64_t windowId);

  /// Has the system ask a user who has not decided yet for consent to send Apple events, and waits for them.
  /// Nobody is asked while Terminal does not run; System Events is started for it.
  void requestTerminalAccess();
  void requestSystemEventsAccess();

  /// `hear` is called once it is found that the user was never asked about Terminal, which was not running
  /// when they should have been. To be set before the first operation.
  void whenUndecided(std::function<void()> hear) { undecided_ = std::move(hear); }

 private:
  template <std::size_t Arity, class... Arguments>
  ScriptDescriptor call(Deadline deadline, const ScriptHandler<Arity>& handler, Arguments... arguments);

  template <std::size_t Arity, class... Arguments>
  ScriptDescriptor run(Deadline deadline, const ScriptHandler<Arity>& handler, Arguments... arguments);
  std::int64_t consentToTerminal(Deadline deadline);
  void expectTime(Deadline deadline) const;
  void expectOnScreen(std::int64_t windowId) const;

  const AppleScriptParts parts_;
  std::atomic<bool> cancelled_ = false;
  std::function<void()> undecided_ = [] {};
  bool isProven_ = false;  // Terminal has taken an event
  bool hasAsked_ = false;
};

}  // namespace velmora
