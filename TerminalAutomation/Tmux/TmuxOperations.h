// The eight operations on tmux.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TerminalAutomation/TerminalOperations.h"
#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "TerminalAutomation/Tmux/PaneDirectory.h"
#include "TerminalAutomation/Tmux/PromptWatch.h"
#include "TerminalAutomation/Tmux/TmuxErrors.h"
#include "TerminalAutomation/Tmux/TmuxTerminal.h"

namespace velmora {

/// Thread-safe. Throws StructuredErrors in tmux's words. What acts on one tab goes straight to the pane that
/// the last listing showed under that address, in one invocation; the server itself checks that it still is
/// that pane (PaneCommands). An address that no listing gave is stale.
class TmuxOperations final : public TerminalOperations {
 public:
  TmuxOperations(TmuxOptions options, TmuxParts parts);

  std::string displayName() const override { return "tmux"; }
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
  void cancel() noexcept override { parts_.transport->cancel(); }

 private:
  TmuxAnswer invoke(Deadline deadline, std::vector<std::string> arguments,
                    std::optional<std::string> input = {},
                    std::size_t outputLimit = std::size_t{64} << 20) const;
  void select(Deadline deadline, std::vector<std::string> arguments) const;

  enum class Listed { panes, panesAndClients, all };
  TmuxListing list(Deadline deadline, Listed what) const;
  void removeLostBuffers(Deadline deadline, const std::vector<BufferRow>& buffers) const;
  std::string clientVersion(Deadline deadline) const;
  TerminalTabSnapshot snapshot(const ArrangedPane& pane);
  TmuxAnswer newSession(Deadline deadline) const;
  std::optional<ArrangedPane> waitForPrompt(Deadline deadline, std::int64_t pane) const;

  PaneRow paneAt(const TabAddress& tab) const;
  struct InputPane {
    PaneRow row;
    bool busy;
    std::optional<TerminalMode> mode;
    std::optional<IdleGuard> idle;  ///< Unless busy panes are allowed.
  };
  InputPane paneForInput(const TabAddress& tab, bool allowBusy, Deadline deadline);
  void refuseTypedLine(const PaneRow& pane, Deadline deadline);
  bool isBusy(const PaneRow& pane) const;
  std::string read(Deadline deadline, PaneCommand command, std::size_t outputLimit) const;
  void type(Deadline deadline, const PaneRow& pane, PaneCommand command);
  std::string newBufferName();
  bool showInDesktopTerminal(Deadline deadline, const PaneRow& pane) const;

  const TmuxOptions options_;
  const TmuxParts parts_;
  const std::string bufferPrefix_;
  std::atomic<std::uint64_t> buffers_ = 0;
  std::atomic<bool> sawBuffers_ = false;
  PaneDirectory panes_;
  PromptWatch prompts_;
};

}  // namespace velmora
