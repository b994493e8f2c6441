// The values that a whole number may have.
#pragma once

#include <algorithm>
#include <cstdint>

namespace velmora {

/// Inclusive at both ends.
struct IntegerRange {
  std::int64_t minimum;
  std::int64_t maximum;

  constexpr bool contains(std::int64_t value) const { return value >= minimum && value <= maximum; }

  /// The value itself, or the end of the range that is nearest to it.
  constexpr std::int64_t nearest(std::int64_t value) const { return std::clamp(value, minimum, maximum); }
};

}  // namespace velmora
