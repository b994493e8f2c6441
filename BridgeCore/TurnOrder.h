// Lets what began in one order end in the same order, although nobody holds a lock in between.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <set>

#include "System/Mutex.h"

namespace velmora {

/// Thread-safe. Must outlive its turns.
class TurnOrder {
 public:
  /// A place in the order, from construction to destruction; that passes the turn on, whether it had come or
  /// not.
  class Turn {
   public:
    explicit Turn(TurnOrder& order);
    ~Turn();
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    /// Blocks until every earlier turn was passed on.
    void wait();

   private:
    TurnOrder& order_;
    std::uint64_t number_ = 0;
  };

 private:
  Mutex mutex_;
  std::condition_variable_any passed_;
  std::uint64_t next_ VELMORA_GUARDED_BY(mutex_) = 0;
  std::set<std::uint64_t> open_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
