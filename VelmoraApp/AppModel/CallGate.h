// Keeps calls that are asked for again and again from piling up.
#pragma once

#include <utility>

namespace velmora {

/// Of the calls of one kind at most one is under way; asked for again meanwhile, one more follows.
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
