// Keeps repeated calls from piling up.
#pragma once

#include <utility>

namespace velmora {

/// At most one call of a kind is under way; if it is requested again meanwhile, one more follows.
class CallGate {
 public:
  /// Whether to make the call now.
  bool enter() {
    if (underWay_) {
      again_ = true;
      return false;
    }
    underWay_ = true;
    return true;
  }
  /// Whether to make it once more.
  bool leave() {
    underWay_ = false;
    return std::exchange(again_, false);
  }
  bool isUnderWay() const { return underWay_; }

 private:
  bool underWay_ = false;
  bool again_ = false;
};

}  // namespace velmora
