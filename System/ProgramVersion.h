// The version that a program says it has.
#pragma once

#include <optional>
#include <string_view>
#include <utility>

namespace velmora {

/// The first number of `text`, and the one behind its point (0 when there is none): {3, 3} for "tmux 3.3a".
/// Absent when there is no number at all, as in a development version's "master". Pure; any thread.
std::optional<std::pair<int, int>> versionNumbers(std::string_view text);

}  // namespace velmora
