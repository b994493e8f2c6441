#include "System/SerialExecutor.h"

#include "System/ThreadName.h"

namespace velmora {

SerialExecutor::SerialExecutor(std::string name)
    : thread_([this, name = std::move(name)] {
        setThreadName(name);
        run();
      }) {}

SerialExecutor::~SerialExecutor() {
  {
    const MutexLock lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_one();
  thread_.join();
}

void SerialExecutor::enqueue(std::function<void()> work) {
  {
    const MutexLock lock(mutex_);
    queue_.push_back(std::move(work));
  }
  wake_.notify_one();
}

void SerialExecutor::run() {
  while (true) {
    std::function<void()> work;
    {
      MutexLock lock(mutex_);
      while (queue_.empty() && !stopping_) wake_.wait(lock);
      if (stopping_) return;
      work = std::move(queue_.front());
      queue_.pop_front();
    }
    work();
  }
}

}  // namespace velmora
