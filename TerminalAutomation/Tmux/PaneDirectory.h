// Turns tmux's rows into tabs: each pane once, windows from the front to the back, under addresses that never
// name another shell.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

#include "System/Mutex.h"
#include "TerminalAutomation/TerminalOperations.h"
#include "TerminalAutomation/Tmux/TmuxRows.h"

namespace velmora {

struct ArrangedPane {
  PaneRow row;
  std::int64_t windowIndex = 0;  ///< From 1, the window that the user looked at last.
  std::int64_t tabIndex = 0;     ///< From 1, in the order of the window's panes.
  std::int64_t lastKey = 0;      ///< Unix seconds of the last key that a user pressed there; 0 for none.
  std::int64_t lastAttach = 0;   ///< Unix seconds at which a terminal that shows it was attached; 0 for none.
  std::int64_t lastActivity =
      0;  ///< Unix seconds of the last key or attach in a session that has the window.
};

/// Windows that an attached client shows come first, the one with the latest key press in front; then the
/// others, by session and by how lately they were current there. A window in several sessions has the row
/// of the one that comes first. Panes without a terminal, and dead ones whose terminal has gone to another
/// pane, are left out.
std::vector<ArrangedPane> arrangePanes(const TmuxListing& listing);

/// "session: what the program calls itself", or the window's name when it does not.
std::string paneTitle(const PaneRow& row);

/// A server and its number for a pane, which it never gives to another one.
TabIdentity paneIdentity(const PaneRow& row);

/// What tmux's users call the pane: "%5" and "work:1.0".
std::vector<std::string> paneTargets(const PaneRow& row);

/// Hands out window ids, and remembers which pane each address names. tmux numbers the windows of each server
/// from 0 and the system uses terminal names again, so the id carries the server's start, and changes when
/// another program has taken a terminal over within the same window: one address never means two panes.
/// Thread-safe.
class PaneDirectory {
 public:
  /// The window id of a pane that was just listed, (start mod 2^29) * 2^24 + number: 53 bits.
  std::int64_t enter(const ArrangedPane& pane);

  /// Gives a pane that was listed without the others the indexes that its terminal was entered with last.
  void recallPlace(ArrangedPane& pane) const;

  /// The pane as it was entered last; nothing for an address that was never given, or whose terminal belongs
  /// to another pane by now.
  std::optional<PaneRow> find(const TabAddress& tab) const;

  /// The pane that was entered last with this terminal.
  std::optional<PaneRow> paneOn(const std::string& tty) const;

 private:
  struct Entry {
    std::int64_t windowId;
    PaneRow row;
    std::int64_t windowIndex;
    std::int64_t tabIndex;
  };
  struct Occupant {
    std::int64_t pane;
    pid_t process;
    pid_t serverProcess;
    std::int64_t generation;  ///< How many others had the terminal in this window before.
  };

  static constexpr std::size_t mostRemembered = 20'000;
  static constexpr std::ptrdiff_t forgottenAtOnce = 1'000;

  std::int64_t windowIdOf(const PaneRow& row) VELMORA_REQUIRES(mutex_);
  void forgetSome(std::int64_t serverStart) VELMORA_REQUIRES(mutex_);

  mutable Mutex mutex_;
  // By start, window, tty.
  std::map<std::tuple<std::int64_t, std::int64_t, std::string>, Occupant> occupants_
      VELMORA_GUARDED_BY(mutex_);
  // Of a terminal that was not seen before, or was forgotten.
  std::int64_t firstGeneration_ VELMORA_GUARDED_BY(mutex_) = 0;
  // By tty. The system uses their names again, so there are never many.
  std::unordered_map<std::string, Entry> latest_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
