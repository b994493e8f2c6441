// The eight operations themselves, one call after another.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TerminalAutomation/TerminalAutomating.h"
#include "TerminalAutomation/Tmux/PaneDirectory.h"
#include "TerminalAutomation/Tmux/TmuxDelivery.h"
#include "TerminalAutomation/Tmux/TmuxErrors.h"
#include "TerminalAutomation/Tmux/TmuxOptions.h"

namespace velmora {

/// Not thread-safe. Throws StructuredError. `options` and `parts` must outlive it.
class TmuxOperations {
 public:
  TmuxOperations(const TmuxExecutorOptions& options, const TmuxParts& parts);

  /// When the next operations were asked for; their deadlines count from then. Without it, from their start.
  void setAsked(std::chrono::steady_clock::time_point asked) { asked_ = asked; }

  TerminalRuntimeStatus status();
  std::vector<TerminalTabSnapshot> listSessions();
  TerminalTabSnapshot createWindow();
  void sendCommand(const std::string& command, const std::string& tty, std::int64_t windowId, bool allowBusy);
  void sendKey(TerminalKey key, std::int64_t repeatCount, const std::string& tty, std::int64_t windowId,
               bool allowBusy);
  TerminalOutput readOutput(OutputSource source, std::int64_t maxCharacters, const std::string& tty,
                            std::int64_t windowId);
  TerminalScreenCapture captureScreen(const std::string& tty, std::int64_t windowId);
  void focus(const std::string& tty, std::int64_t windowId);

 private:
  /// One operation's name and the time by which it is over.
  struct Call {
    std::string_view operation;
    std::chrono::steady_clock::time_point deadline;
  };

  Call begin(std::string_view operation) const;
  TmuxAnswer invoke(const Call& call, std::vector<std::string> arguments,
                    std::optional<std::string> input = {},
                    std::size_t outputLimit = std::size_t{64} << 20) const;
  std::string invokeOrThrow(const Call& call, std::vector<std::string> arguments, TmuxEffect effect) const;

  TmuxListing list(const Call& call, bool withClients, const std::string& filter = {}) const;
  PaneRow findPane(const Call& call, const std::string& tty, std::int64_t windowId);
  PaneRow findPaneForInput(const Call& call, const std::string& tty, std::int64_t windowId, bool allowBusy);
  std::string read(const Call& call, PaneCommand command, std::size_t outputLimit) const;
  void type(const Call& call, PaneCommand command) const;
  std::string newBufferName();
  bool isBusy(const PaneRow& pane) const;
  TerminalTabSnapshot snapshot(const ArrangedPane& pane);
  std::optional<ArrangedPane> waitForPrompt(const Call& call, std::int64_t pane) const;
  bool showInDesktopTerminal(const Call& call, const PaneRow& pane) const;
  std::string clientVersion(const Call& call) const;

  const TmuxExecutorOptions& options_;
  const TmuxParts& parts_;
  const std::string bufferPrefix_;
  std::uint64_t buffers_ = 0;
  std::optional<std::chrono::steady_clock::time_point> asked_;
  WindowIds windowIds_;
};

}  // namespace velmora
