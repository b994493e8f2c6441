// Finds the name that was meant.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

/// How many letters must be added, removed or changed to make `a` of `b`.
std::size_t editDistance(std::string_view a, std::string_view b);

/// The name most like `typed`, or nothing when none is like it. A name may have left out `prefix`.
std::optional<std::string_view> nearestName(std::string_view typed, std::span<const std::string_view> names,
                                            std::string_view prefix = {});

/// "; did you mean NAME?", or nothing.
std::string didYouMean(std::optional<std::string_view> name);

}  // namespace velmora
