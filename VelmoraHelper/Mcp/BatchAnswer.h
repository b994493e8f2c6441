// The answer to a batch: the answers to its requests, gathered in one array.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>

#include "BridgeModels/Json/JsonWriter.h"

namespace velmora {

/// Hands a finished message, one line without its end, to the client.
using Send = std::function<void(std::string)>;

/// Sends its array when each of the batch's messages has been answered or needs no answer, and nothing when
/// none was answered. Not thread-safe.
class BatchAnswer {
 public:
  BatchAnswer(std::size_t messages, Send send) : awaited_(messages), send_(std::move(send)) {
    answers_.beginArray();
  }

  void add(const std::string& answer) {
    answers_.raw(answer);
    isAnswered_ = true;
    leaveOut();
  }

  /// A message needs no answer: a notification, or a request that was cancelled.
  void leaveOut() {
    if (--awaited_ > 0 || !isAnswered_) return;
    answers_.endArray();
    send_(answers_.take());
  }

 private:
  std::size_t awaited_;
  Send send_;
  JsonWriter answers_{JsonFormat::wire};
  bool isAnswered_ = false;
};

}  // namespace velmora
