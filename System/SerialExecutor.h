// One thread that works through a queue, in order.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>

#include "System/Mutex.h"

namespace velmora {

/// Thread-safe. Destruction finishes the work under way, drops what waits (its futures report
/// std::future_errc::broken_promise) and joins the thread.
class SerialExecutor {
 public:
  /// `name` is what debuggers show for the thread.
  explicit SerialExecutor(std::string name);
  ~SerialExecutor();
  SerialExecutor(const SerialExecutor&) = delete;
  SerialExecutor& operator=(const SerialExecutor&) = delete;

  /// Queues `work`; its result or exception arrives through the future.
  template <class Work>
  auto submit(Work work) -> std::future<std::invoke_result_t<Work&>> {
    // std::function wants a copyable target, a packaged task is not.
    auto task = std::make_shared<std::packaged_task<std::invoke_result_t<Work&>()>>(std::move(work));
    auto result = task->get_future();
    enqueue([task] { (*task)(); });
    return result;
  }

 private:
  void enqueue(std::function<void()> work);
  void run();

  Mutex mutex_;
  std::condition_variable_any wake_;
  std::deque<std::function<void()>> queue_ VELMORA_GUARDED_BY(mutex_);
  bool stopping_ VELMORA_GUARDED_BY(mutex_) = false;
  std::thread thread_;
};

}  // namespace velmora
