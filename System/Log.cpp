#include "System/Log.h"

#include <algorithm>

#include "System/Utf8.h"

namespace velmora {

namespace {

constexpr std::size_t mostQuotedBytes = 64;

}  // namespace

void Log::write(LogLevel level, std::string_view area, std::string_view words) const {
  if (sink_) sink_(level, area, plainText(words));
}

std::string quotedForLog(std::string_view text) {
  auto quoted = plainText(text);
  std::replace(quoted.begin(), quoted.end(), '"', '\'');
  if (quoted.size() > mostQuotedBytes) {
    quoted.resize(firstBytes(quoted, mostQuotedBytes).size());
    quoted += "…";
  }
  return '"' + quoted + '"';
}

}  // namespace velmora
