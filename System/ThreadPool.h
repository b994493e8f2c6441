// A bounded number of threads that work through one queue.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "System/Mutex.h"

namespace velmora {

/// Thread-safe. Work is begun in the order in which it was handed in. A thread starts when there is work and
/// no thread without any, so a pool that nobody uses has none. Destruction finishes the work under way, drops
/// what waits (its futures report std::future_errc::broken_promise) and joins the threads.
class ThreadPool {
 public:
  /// `name` is what debuggers show for each thread.
  ThreadPool(std::string name, std::size_t mostThreads);
  ~ThreadPool();
  ThreadPool(const ThreadPool&) = delete;
  ThreadPool& operator=(const ThreadPool&) = delete;

  /// Queues `work`; its result or exception arrives through the future. Throws std::system_error when there
  /// is no thread yet and the system gives none.
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
  void startThread() VELMORA_REQUIRES(mutex_);
  void run();

  const std::string name_;
  const std::size_t mostThreads_;
  Mutex mutex_;
  std::condition_variable_any wake_;
  std::deque<std::function<void()>> queue_ VELMORA_GUARDED_BY(mutex_);
  std::size_t idle_ VELMORA_GUARDED_BY(mutex_) = 0;  // threads that wait for work
  bool stopping_ VELMORA_GUARDED_BY(mutex_) = false;
  std::vector<std::thread> threads_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
