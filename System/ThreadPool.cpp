#include "System/ThreadPool.h"

#include <system_error>

#include "System/ThreadName.h"

namespace velmora {

ThreadPool::ThreadPool(std::string name, std::size_t mostThreads)
    : name_(std::move(name)), mostThreads_(mostThreads) {}

ThreadPool::~ThreadPool() {
  std::vector<std::thread> threads;
  {
    const MutexLock lock(mutex_);
    stopping_ = true;
    threads.swap(threads_);
  }
  wake_.notify_all();
  for (auto& thread : threads) thread.join();
}

void ThreadPool::enqueue(std::function<void()> work) {
  {
    const MutexLock lock(mutex_);
    // Those that wait may have been woken for what is queued already.
    if (idle_ <= queue_.size() && threads_.size() < mostThreads_) startThread();
    queue_.push_back(std::move(work));
  }
  wake_.notify_one();
}

void ThreadPool::startThread() {
  try {
    threads_.emplace_back([this] {
      setThreadName(name_);
      run();
    });
  } catch (const std::system_error&) {
    if (threads_.empty()) throw;  // else one of the others takes the work when it is done
  }
}

void ThreadPool::run() {
  while (true) {
    std::function<void()> work;
    {
      MutexLock lock(mutex_);
      ++idle_;
      while (queue_.empty() && !stopping_) wake_.wait(lock);
      --idle_;
      if (stopping_) return;
      work = std::move(queue_.front());
      queue_.pop_front();
    }
    work();
  }
}

}  // namespace velmora
