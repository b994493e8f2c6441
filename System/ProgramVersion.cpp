// A file of its own although short: what a version says has nothing to do with where its program is.
#include "System/ProgramVersion.h"

#include <charconv>

namespace velmora {

std::optional<std::pair<int, int>> versionNumbers(std::string_view text) {
  const std::size_t digit = text.find_first_of("0123456789");
  if (digit == std::string_view::npos) return std::nullopt;
  std::pair<int, int> version;
  const char* const end = text.data() + text.size();
  const auto major = std::from_chars(text.data() + digit, end, version.first);
  // One that is too large for an int would read as 0.
  if (major.ec != std::errc()) return std::nullopt;
  if (major.ptr != end && *major.ptr == '.') std::from_chars(major.ptr + 1, end, version.second);
  return version;
}

}  // namespace velmora
