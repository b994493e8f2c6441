// A clock that moves only when told, and UUIDs that count upwards.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "BridgeModels/Date.h"
#include "BridgeModels/Uuid.h"

namespace velmora::testing {

/// Thread-safe. Copies of `clock()` share the time of this object, which must outlive them.
class FakeTime {
 public:
  explicit FakeTime(double start = 1000) : seconds_(start) {}

  Date now() const { return {seconds_.load()}; }
  void advance(double seconds) { seconds_.store(seconds_.load() + seconds); }
  Clock clock() const {
    return [this] { return now(); };
  }

 private:
  std::atomic<double> seconds_;
};

/// 00000000-0000-0000-0000-00000000000N
inline Uuid numberedUuid(std::uint64_t number) {
  Uuid uuid;
  for (std::size_t index = 0; index < 8; ++index) {
    uuid.bytes[15 - index] = static_cast<std::uint8_t>(number >> (8 * index));
  }
  return uuid;
}

/// 1, 2, 3, ... Thread-safe.
inline UuidSource countingUuids() {
  auto next = std::make_shared<std::atomic<std::uint64_t>>(1);
  return [next] { return numberedUuid(next->fetch_add(1)); };
}

}  // namespace velmora::testing
