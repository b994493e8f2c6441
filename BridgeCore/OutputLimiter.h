// Cuts output to a budget of characters and keeps the end, where the latest output is.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmora {

struct LimitedOutput {
  std::string text;
  std::int64_t originalCharacterCount = 0;

  /// Whether characters were cut: a count, not a flag, so it holds for values built elsewhere too.
  bool truncated() const;

  bool operator==(const LimitedOutput&) const = default;
};

struct OutputLimiter {
  /// The last `maximumCharacters` characters (grapheme clusters) of `text`; none when it is negative. Pure.
  static LimitedOutput suffix(std::string_view text, std::int64_t maximumCharacters);
};

}  // namespace velmora
