// What agents ask, as it happens, for users who watch. It keeps nothing for those who come later: what the
// settings do not allow to be stored is seen by who watches just then, and by nobody else.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "BridgeModels/MCPRequestRecord.h"
#include "System/Mutex.h"

namespace velmora {

class TooManyWatchers : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A few watchers, each with a queue of its own. Thread-safe.
class RequestFeed {
 public:
  /// As many wait for a watcher; with commands cut at `mostCommandBytes` they fit into one frame.
  static constexpr std::size_t mostWaiting = 100;
  static constexpr std::size_t mostCommandBytes = 1'000;
  /// A connection stays open for each, and two for one with a screen: room is left for who only pauses.
  static constexpr std::size_t mostWatchers = 6;

  struct Seen {
    std::vector<MCPRequestRecord> requests{};  ///< In the order in which they ended.
    std::int64_t missed = 0;                   ///< So many came before them while the watcher was slow.
  };

  /// Hears what ends from its construction to its destruction; the feed must outlive it. One thread at a
  /// time.
  class Watcher {
   public:
    /// Throws TooManyWatchers when there are as many as there may be.
    explicit Watcher(RequestFeed& feed);
    ~Watcher();
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    /// Waits until there is something, for as long as `patience` allows, or until the feed is closed.
    Seen next(std::chrono::milliseconds patience);

   private:
    friend class RequestFeed;
    RequestFeed& feed_;
    std::deque<MCPRequestRecord> waiting_{};  // the feed's mutex guards both
    std::int64_t missed_ = 0;
  };

  /// Whether anybody watches, so that nothing is made for nobody.
  bool isWatched() const;

  /// A request has ended. `command` is what it typed, empty for none.
  void tell(MCPRequestRecord request, std::string_view command);

  /// While it is closed nobody waits, so that connections can end.
  void close();
  void open();

 private:
  mutable Mutex mutex_;
  std::condition_variable_any told_;
  std::vector<Watcher*> watchers_ VELMORA_GUARDED_BY(mutex_);
  bool isClosed_ VELMORA_GUARDED_BY(mutex_) = false;
};

}  // namespace velmora
