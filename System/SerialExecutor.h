// One thread that works through a queue, in order.
#pragma once

#include "System/ThreadPool.h"

namespace velmora {

/// A pool of one thread: what it is handed never meets.
class SerialExecutor : public ThreadPool {
 public:
  /// `name` is what debuggers show for the thread.
  explicit SerialExecutor(std::string name) : ThreadPool(std::move(name), 1) {}
};

}  // namespace velmora
