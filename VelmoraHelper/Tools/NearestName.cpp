#include "VelmoraHelper/Tools/NearestName.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace velmora {

std::size_t editDistance(std::string_view a, std::string_view b) {
  // The distances of one beginning of `a` to every beginning of `b`.
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t line = 1; line <= a.size(); ++line) {
    std::size_t diagonal = std::exchange(row[0], line);
    for (std::size_t column = 1; column <= b.size(); ++column) {
      const std::size_t changed = diagonal + (a[line - 1] == b[column - 1] ? 0 : 1);
      diagonal = row[column];
      row[column] = std::min({row[column] + 1, row[column - 1] + 1, changed});
    }
  }
  return row.back();
}

std::optional<std::string_view> nearestName(std::string_view typed, std::span<const std::string_view> names,
                                            std::string_view prefix) {
  // A third of the letters may be wrong.
  std::size_t nearest = std::max<std::size_t>(typed.size() / 3, 1) + 1;
  std::optional<std::string_view> found;
  for (const auto name : names) {
    auto distance = editDistance(typed, name);
    if (!prefix.empty() && name.starts_with(prefix)) {
      distance = std::min(distance, editDistance(typed, name.substr(prefix.size())));
    }
    if (distance >= nearest) continue;
    nearest = distance;
    found = name;
  }
  return found;
}

std::string didYouMean(std::optional<std::string_view> name) {
  return name ? "; did you mean " + std::string(*name) + "?" : "";
}

}  // namespace velmora
