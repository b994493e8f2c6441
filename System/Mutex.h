// A mutex that Clang's thread-safety analysis understands. Each monitor class marks what its mutex guards;
// Clang builds refuse an access without the lock.
#pragma once

#include <condition_variable>
#include <mutex>

#if defined(__clang__)
#define VELMORA_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define VELMORA_THREAD_ATTRIBUTE(x)
#endif

#define VELMORA_GUARDED_BY(mutex) VELMORA_THREAD_ATTRIBUTE(guarded_by(mutex))
#define VELMORA_REQUIRES(mutex) VELMORA_THREAD_ATTRIBUTE(requires_capability(mutex))

namespace velmora {

class VELMORA_THREAD_ATTRIBUTE(capability("mutex")) Mutex {
 public:
  void lock() VELMORA_THREAD_ATTRIBUTE(acquire_capability()) { mutex_.lock(); }
  void unlock() VELMORA_THREAD_ATTRIBUTE(release_capability()) { mutex_.unlock(); }

 private:
  std::mutex mutex_;
};

/// Holds a Mutex for a scope. It can be handed to a std::condition_variable_any, which releases it while
/// it waits.
class VELMORA_THREAD_ATTRIBUTE(scoped_lockable) MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) VELMORA_THREAD_ATTRIBUTE(acquire_capability(mutex)) : mutex_(mutex) {
    mutex_.lock();
  }
  ~MutexLock() VELMORA_THREAD_ATTRIBUTE(release_capability()) { mutex_.unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

  void lock() VELMORA_THREAD_ATTRIBUTE(acquire_capability()) { mutex_.lock(); }
  void unlock() VELMORA_THREAD_ATTRIBUTE(release_capability()) { mutex_.unlock(); }

 private:
  Mutex& mutex_;
};

}  // namespace velmora
