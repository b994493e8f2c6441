#include "BridgeCore/RequestFeed.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "System/Utf8.h"

namespace velmora {

RequestFeed::Watcher::Watcher(RequestFeed& feed) : feed_(feed) {
  const MutexLock lock(feed_.mutex_);
  if (feed_.watchers_.size() == mostWatchers) throw TooManyWatchers("no more can watch");
  feed_.watchers_.push_back(this);
}

RequestFeed::Watcher::~Watcher() {
  const MutexLock lock(feed_.mutex_);
  std::erase(feed_.watchers_, this);
}

RequestFeed::Seen RequestFeed::Watcher::next(std::chrono::milliseconds patience) {
  const auto end = std::chrono::steady_clock::now() + patience;
  MutexLock lock(feed_.mutex_);
  while (waiting_.empty() && !feed_.isClosed_ && feed_.told_.wait_until(lock, end) != std::cv_status::timeout)
    continue;
  Seen seen{.requests = {std::make_move_iterator(waiting_.begin()), std::make_move_iterator(waiting_.end())},
            .missed = std::exchange(missed_, 0)};
  waiting_.clear();
  return seen;
}

bool RequestFeed::isWatched() const {
  const MutexLock lock(mutex_);
  return !watchers_.empty();
}

void RequestFeed::tell(MCPRequestRecord request, std::string_view command) {
  if (!command.empty()) request.commandBody = firstBytes(command, mostCommandBytes);
  const MutexLock lock(mutex_);
  for (auto* watcher : watchers_) {
    if (watcher->waiting_.size() == mostWaiting) {
      watcher->waiting_.pop_front();
      ++watcher->missed_;
    }
    watcher->waiting_.push_back(request);
  }
  told_.notify_all();
}

void RequestFeed::close() {
  const MutexLock lock(mutex_);
  isClosed_ = true;
  told_.notify_all();
}

void RequestFeed::open() {
  const MutexLock lock(mutex_);
  isClosed_ = false;
}

}  // namespace velmora
