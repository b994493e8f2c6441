// The terminals on which a user watches what agents do. What runs there is not for agents, whatever the
// session's permission says: they could press its keys.
#pragma once

#include <algorithm>
#include <functional>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include "BridgeModels/TerminalSession.h"
#include "System/Mutex.h"

namespace velmora {

/// Thread-safe.
class WatchedTerminals {
 public:
  /// Whether who watches is still on the terminal: the system gives the name of one that ended to the next.
  /// Called on any thread; must not throw.
  using StillThere = std::function<bool()>;

  /// One terminal is watched on for as long as it lives; the table must outlive it.
  class Hold {
   public:
    Hold(
        WatchedTerminals& table, std::string tty, StillThere stillThere = [] { return true; })
        : table_(table) {
      const MutexLock lock(table_.mutex_);
      place_ = table_.held_.emplace(table_.held_.end(), std::move(tty), std::move(stillThere));
    }
    ~Hold() {
      const MutexLock lock(table_.mutex_);
      table_.held_.erase(place_);
    }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    WatchedTerminals& table_;
    std::list<std::pair<std::string, StillThere>>::iterator place_{};
  };

  /// The session as agents have it now: blocked on such a terminal. What the registry keeps holds again
  /// afterwards.
  TerminalSession asHeld(TerminalSession session) const {
    std::vector<StillThere> holds;
    {
      const MutexLock lock(mutex_);
      for (const auto& [tty, stillThere] : held_) {
        if (tty == session.tty) holds.push_back(stillThere);
      }
    }
    if (std::any_of(holds.begin(), holds.end(), [](const auto& stillThere) { return stillThere(); }))
      session.permission = SessionPermission::blocked;
    return session;
  }

 private:
  mutable Mutex mutex_;
  std::list<std::pair<std::string, StillThere>> held_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
