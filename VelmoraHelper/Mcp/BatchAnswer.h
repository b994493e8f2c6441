// The answer to a batch: the answers to its requests, gathered in one array.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace velmora {

/// Hands a finished message, one line without its end, to the client.
using Send = std::function<void(std::string)>;

/// Sends its array when each of the batch's messages has been answered or needs no answer, and nothing when
/// none was answered. Not thread-safe.
class BatchAnswer {
 public:
  BatchAnswer(std::size_t messages, Send send) : awaited_(messages), send_(std::move(send)) {}

  void add(const std::string& answer) {
    answers_.append(answers_.empty() ? "[" : ",").append(answer);
    leaveOut();
  }

  /// A message needs no answer: a notification, or a request that was cancelled.
  void leaveOut() {
    if (--awaited_ == 0 && !answers_.empty()) send_(answers_ + "]");
  }

 private:
  std::size_t awaited_;
  Send send_;
  std::string answers_{};
};

}  // namespace velmora
