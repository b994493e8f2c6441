// Whether the shells of listed panes wait at their prompts.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "System/Mutex.h"
#include "TerminalAutomation/Tmux/BusyDetector.h"
#include "TerminalAutomation/Tmux/TmuxRows.h"

namespace velmora {

/// Thread-safe.
class PaneLooks {
 public:
  struct Look {
    std::string tty;
    PaneLook look;
  };
  /// By the pane's first process.
  using Ahead = std::unordered_map<pid_t, Look>;

  /// `processes` must outlive it.
  PaneLooks(const ProcessTable& processes, std::function<void(std::chrono::milliseconds)> sleep);

  /// Which panes the next listing will probably show: those of this one.
  void expect(const std::vector<const PaneRow*>& panes);

  /// Looks at the expected panes now, while tmux composes their listing: of many panes that takes as long as
  /// the listing itself.
  Ahead lookAhead() const;

  /// Of each pane whether it is busy. What was looked at ahead counts where it was the same process on the
  /// same terminal. Looks again, after one pause for all, where one look does not tell.
  std::vector<bool> areBusy(const std::vector<const PaneRow*>& panes, const Ahead& ahead = {}) const;

 private:
  struct Shell {
    pid_t process;
    std::string tty;
  };

  const ProcessTable& processes_;
  const std::function<void(std::chrono::milliseconds)> sleep_;
  mutable Mutex mutex_;
  std::vector<Shell> expected_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
