// What an adapter implements: the eight operations on a terminal, each a plain call that ends by its
// deadline. SerialTerminal gives them threads and a queue.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/PrivacyRetentionSettings.h"
#include "BridgeModels/StructuredError.h"
#include "BridgeModels/TerminalOutput.h"
#include "BridgeModels/TerminalSession.h"
#include "BridgeModels/ToolInputs.h"
#include "TerminalAutomation/PlatformError.h"
#include "TerminalAutomation/TabWatch.h"
#include "TerminalAutomation/TerminalMarks.h"

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

/// How a new window differs from the usual one.
struct WindowWish {
  std::optional<std::string> name{};
  std::optional<std::string> directory{};  ///< Absolute.
  std::optional<std::int64_t> columns{};
  std::optional<std::int64_t> rows{};

  bool isEmpty() const { return !name && !directory && !columns && !rows; }
  bool operator==(const WindowWish&) const = default;
};

/// How the extended form reads a tab.
struct OutputWish {
  OutputSource source = OutputSource::visible;  ///< Of the whole text, where only what is new cannot be told.
  std::int64_t maxCharacters = 0;
  std::optional<std::string> after{};  ///< The cursor of an earlier read: only what is new since is wanted.
  OutputFormat format = OutputFormat::plain;
};

/// What it finds. A cursor is a few plain characters in which an adapter writes down where a text ended.
struct OutputFound {
  TerminalOutput output{};
  std::optional<std::string> cursor{};  ///< Of the text's end; absent when that cannot be told later.
  bool cursorLost = false;              ///< `after` was asked for and the text is the whole one.
};

/// An adapter knows nothing of session ids, tools, permissions or policy. Failures are PlatformErrors, or
/// StructuredErrors in the adapter's own words that leave `operation` and `session` to whoever knows them.
///
/// Threads: the calls that change something (createWindow, createWindowAs, sendCommand, sendKey,
/// typeUnsubmitted, focus) never meet one another. Those that only look may meet these and each other, unless
/// `isSerial`. `useSettings` and `cancel` may come at any time.
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

  /// The tabs that a listing taken now would show on this terminal, others may be among them: all that a call
  /// about one tab needs to know. They may be at the places that the last whole listing gave them.
  virtual std::vector<TerminalTabSnapshot> listTab(const std::string& /*tty*/, Deadline deadline) {
    return listSessions(deadline);
  }

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

  /// At any time, as TerminalAutomating::useSettings.
  virtual void useSettings(const PrivacyRetentionSettings& /*settings*/) {}

  /// As TerminalAutomating::mark. One call at a time, beside everything else.
  virtual void mark(const TerminalMarks& /*marks*/, Deadline /*deadline*/) {}

  /// For shutdown: ends what is under way early, as far as it can be ended, and fails all later calls.
  virtual void cancel() noexcept {}

  // What only the extended form of the tools asks for. An adapter that cannot do it inherits the refusal.

  /// Types `text` plainly and submits nothing; the rest is as of sendCommand. Changes something.
  virtual void typeUnsubmitted(const std::string& /*text*/, const TabAddress& /*tab*/, bool /*allowBusy*/,
                               Deadline /*deadline*/) {
    throw StructuredError{.code = ErrorCode::invalidArgument,
                          .message = displayName() + " cannot type text without Return.",
                          .recoverySuggestion = "Leave out submit, and use the keys of the plain form."};
  }

  /// Opens a window as wished. Changes something.
  virtual TerminalTabSnapshot createWindowAs(const WindowWish& wish, Deadline deadline) {
    if (wish.isEmpty()) return createWindow(deadline);
    throw StructuredError{.code = ErrorCode::invalidArgument,
                          .message = displayName() + " opens windows of one kind only.",
                          .recoverySuggestion = "Leave out name, directory, columns and rows."};
  }

  /// Begins to watch an idle tab, before `command` is typed into it; nothing where the listing is all that
  /// tells. A look.
  virtual std::shared_ptr<TabWatch> watch(const std::string& /*command*/, const TabAddress& /*tab*/,
                                          Deadline /*deadline*/) {
    return nullptr;
  }

  /// As readOutput. With `after`, from the line on that was the last one then, which is left out when it is
  /// the same: a line that was not finished comes again whole. A text is never left out or repeated without
  /// `cursorLost`. A cursor that this adapter has not made is lost. With colours, only SGR sequences are left
  /// in the text, which ends without any; they count as characters.
  virtual OutputFound readAs(const OutputWish& wish, const TabAddress& tab, Deadline deadline) {
    if (wish.format != OutputFormat::plain) throw withoutColours();
    return {.output = readOutput(wish.source, wish.maxCharacters, tab, deadline),
            .cursorLost = wish.after.has_value()};
  }

  /// Of every tab, by tty, what the listing leaves out.
  virtual std::map<std::string, TabDetails> tabDetails(Deadline /*deadline*/) { return {}; }

 protected:
  StructuredError withoutColours() const {
    return {.code = ErrorCode::invalidArgument,
            .message = displayName() + " does not tell the colours of its text.",
            .recoverySuggestion = "Leave out format."};
  }
};

}  // namespace velmora
