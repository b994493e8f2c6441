// Carries calls off the main thread, one after the other, and their results back to it.
#pragma once

#include <QtCore/QMetaObject>
#include <QtCore/QObject>
#include <string>
#include <utility>

#include "System/SerialExecutor.h"

namespace velmora {

/// To be used from the receivers' thread. Destruction finishes the running work and drops what is queued.
class Worker {
 public:
  explicit Worker(std::string name) : executor_(std::move(name)) {}

  /// Runs `work`, which must not throw, on the worker's thread, then `done` with its result on the thread of
  /// `receiver`. The receiver must outlive the worker; once the worker is gone nothing arrives any more.
  template <class Work, class Done>
  void run(QObject* receiver, Work work, Done done) {
    executor_.submit([receiver, work = std::move(work), done = std::move(done)]() mutable noexcept {
      QMetaObject::invokeMethod(
          receiver, [done = std::move(done), result = work()]() mutable { done(std::move(result)); },
          Qt::QueuedConnection);
    });
  }

  /// Waits until all work requested so far is done; the results arrive later.
  void drain() {
    executor_.submit([] {}).wait();
  }

 private:
  SerialExecutor executor_;
};

}  // namespace velmora
