// A file of its own although short: whoever waits for a turn need not read how.
#include "BridgeCore/TurnOrder.h"

namespace velmora {

TurnOrder::Turn::Turn(TurnOrder& order) : order_(order) {
  const MutexLock lock(order_.mutex_);
  number_ = order_.next_++;
  order_.open_.insert(number_);
}

TurnOrder::Turn::~Turn() {
  {
    const MutexLock lock(order_.mutex_);
    order_.open_.erase(number_);
  }
  order_.passed_.notify_all();
}

void TurnOrder::Turn::wait() {
  MutexLock lock(order_.mutex_);
  while (*order_.open_.begin() != number_) order_.passed_.wait(lock);
}

}  // namespace velmora
