// What an adapter implements: the eight operations on a terminal, each a plain call that ends by its
// deadline. SerialTerminal gives them threads and a queue.
#pragma once

#include <chrono>
#include <cstdint>
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

/// The name of a tab. Both come from a listing or from createWindow.
struct TabAddress {
  std::string tty{};
  std::int64_t windowId = 0;
};

/// An adapter knows nothing of session ids, tools, permissions or policy. Failures are PlatformErrors, or
/// StructuredErrors in the adapter's own words that leave `operation` and `session` to whoever knows them.
///
/// Threads: the four that change something (createWindow, sendCommand, sendKey, focus) never meet one
/// another. The four that only look may meet those and each other, unless `isSerial`. `cancel` may come at
/// any time.
///
/// A call that is begun after its deadline fails without touching the terminal.
class TerminalOperations {
 public:
  using Deadline = std::chrono::steady_clock::time_point;

  virtual ~TerminalOperations() = default;

  /// The terminal's name for screens and messages: "Terminal.app", "tmux".
  virtual std::string displayName() const = 0;

  /// Whether no two calls may meet, whatever they do.
  virtual bool isSerial() const { return false; }

  virtual TerminalRuntimeStatus status(Deadline deadline) = 0;

  /// Every tab, in the order in which the terminal reports them.
  virtual std::vector<TerminalTabSnapshot> listSessions(Deadline deadline) = 0;

  /// Opens a window and returns its one tab.
  virtual TerminalTabSnapshot createWindow(Deadline deadline) = 0;

  /// Types `command` and submits it. Without `allowBusy` a tab that is busy by now is refused: because of a
  /// program that runs without a message (the core has one), for another reason in the adapter's words.
  virtual void sendCommand(const std::string& command, const TabAddress& tab, bool allowBusy,
                           Deadline deadline) = 0;

  /// Presses `key` `repeatCount` times. An adapter that cannot press keys inherits the failure.
  virtual void sendKey(TerminalKey /*key*/, std::int64_t /*repeatCount*/, const TabAddress& /*tab*/,
                       bool /*allowBusy*/, Deadline /*deadline*/) {
    throw PlatformError("Velmora.Automation", platformErrorCode::eventNotHandled,
                        "Special key input is not supported by this automation adapter.");
  }

  /// The tab's text; at most about `maxCharacters` of its end are wanted. The count in the result is that of
  /// the whole text.
  virtual TerminalOutput readOutput(OutputSource source, std::int64_t maxCharacters, const TabAddress& tab,
                                    Deadline deadline) = 0;

  /// Writes a picture of the tab to a PNG file of its own.
  virtual TerminalScreenCapture captureScreen(const TabAddress& tab, Deadline deadline) = 0;

  /// Brings the tab to the front.
  virtual void focus(const TabAddress& tab, Deadline deadline) = 0;

  /// For shutdown: ends what is under way early, as far as it can be ended, and fails all later calls.
  virtual void cancel() noexcept {}
};

}  // namespace velmora
