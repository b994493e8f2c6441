// The eight operations on tmux.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TerminalAutomation/TerminalOperations.h"
#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "TerminalAutomation/Tmux/PaneDirectory.h"
#include "TerminalAutomation/Tmux/PaneLooks.h"
#include "TerminalAutomation/Tmux/PromptWatch.h"
#include "TerminalAutomation/Tmux/TmuxErrors.h"
#include "TerminalAutomation/Tmux/TmuxTerminal.h"
#include "TerminalAutomation/Tmux/WayNote.h"

namespace velmora {

/// Thread-safe but for `mark`. Throws StructuredErrors in tmux's words. What acts on one tab goes straight to
/// the pane that the last listing showed under that address, in one invocation; the server itself checks that
/// it still is that pane (PaneCommands). An address that no listing gave is stale.
class TmuxOperations final : public TerminalOperations {
 public:
  TmuxOperations(TmuxOptions options, TmuxParts parts);

  std::string displayName() const override { return "tmux"; }
  TerminalRuntimeStatus status(Deadline deadline) override;
  std::vector<TerminalTabSnapshot> listSessions(Deadline deadline) override;
  std::vector<TerminalTabSnapshot> listTab(const std::string& tty, Deadline deadline) override;
  TerminalTabSnapshot createWindow(Deadline deadline) override { return createWindowAs({}, deadline); }
  void sendCommand(const std::string& command, const TabAddress& tab, bool allowBusy,
                   Deadline deadline) override;
  void sendKey(TerminalKey key, std::int64_t repeatCount, const TabAddress& tab, bool allowBusy,
               Deadline deadline) override;
  TerminalOutput readOutput(OutputSource source, std::int64_t maxCharacters, const TabAddress& tab,
                            Deadline deadline) override;
  TerminalScreenCapture captureScreen(const TabAddress& tab, Deadline deadline) override;
  void focus(const TabAddress& tab, Deadline deadline) override;
  void useSettings(const PrivacyRetentionSettings& settings) override;
  void mark(const TerminalMarks& marks, Deadline deadline) override;
  void cancel() noexcept override { parts_.transport->cancel(); }
  void typeUnsubmitted(const std::string& text, const TabAddress& tab, bool allowBusy,
                       Deadline deadline) override;
  TerminalTabSnapshot createWindowAs(const WindowWish& wish, Deadline deadline) override;
  std::map<std::string, TabDetails> tabDetails(Deadline deadline) override;
  std::shared_ptr<TabWatch> watch(const std::string& command, const TabAddress& tab,
                                  Deadline deadline) override;
  OutputFound readAs(const OutputWish& wish, const TabAddress& tab, Deadline deadline) override;

 private:
  friend class TmuxWatch;

  static constexpr std::size_t historyLimit = std::size_t{256} << 20;  // bytes of a pane's text

  TmuxAnswer invoke(Deadline deadline, std::vector<std::string> arguments,
                    std::optional<std::string> input = {}, std::size_t outputLimit = std::size_t{64} << 20,
                    std::function<void()> meanwhile = {}) const;
  void select(Deadline deadline, std::vector<std::string> arguments) const;

  enum class Listed { panes, panesAndClients, all };
  TmuxListing list(Deadline deadline, Listed what, const std::string& tty = {},
                   const std::function<void()>& meanwhile = {}) const;
  void removeLostBuffers(Deadline deadline, const std::vector<BufferRow>& buffers) const;
  std::string clientVersion(Deadline deadline) const;
  TerminalTabSnapshot snapshot(const ArrangedPane& pane, bool busy);
  std::vector<TerminalTabSnapshot> see(const std::vector<ArrangedPane>& panes, const std::vector<bool>& busy,
                                       Date taken);
  TmuxAnswer newSession(const WindowWish& wish, const std::vector<std::string>& shell,
                        Deadline deadline) const;
  std::optional<ArrangedPane> waitForPrompt(Deadline deadline, std::int64_t pane) const;

  PaneRow paneAt(const TabAddress& tab) const;
  struct InputPane {
    PaneRow row;
    bool busy;
    std::optional<TerminalMode> mode;
    std::optional<IdleGuard> idle;  ///< Unless busy panes are allowed.
  };
  // False or nothing: the cursor moved since the listing, and nothing was typed.
  std::optional<InputPane> paneForInput(const TabAddress& tab, bool allowBusy, Deadline deadline);
  bool refuseTypedLine(const PaneRow& pane, Deadline deadline);
  bool type(Deadline deadline, const PaneRow& pane, PaneCommand command);
  void deliver(const TabAddress& tab, bool allowBusy, Deadline deadline,
               const std::function<PaneCommand(const InputPane&)>& compose);
  bool isBusy(const PaneRow& pane) const { return looks_.areBusy({&pane}).front(); }
  std::string read(Deadline deadline, PaneCommand command, std::size_t outputLimit) const;
  std::string newBufferName();
  bool showInDesktopTerminal(Deadline deadline, const PaneRow& pane) const;

  const TmuxOptions options_;
  const TmuxParts parts_;
  PaneLooks looks_;
  const std::string bufferPrefix_;
  std::atomic<std::uint64_t> buffers_ = 0;
  std::atomic<bool> sawBuffers_ = false;
  // Before the settings were read:
  std::atomic<bool> integratesShells_ = false;
  std::atomic<bool> containsWindows_ = false;
  WayNote wayNote_;
  PaneDirectory panes_;
  PromptWatch prompts_;

  // What `mark` has set; nothing else looks at it: a state for each run of the server, a permission for each
  // pane.
  struct Marked {
    std::string state{};
    std::map<TabIdentity, SessionPermission> permissions{};
  };
  Marked marked_{};
  std::string markedServer_{};
};

}  // namespace velmora
