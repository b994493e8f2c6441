#include "System/Log.h"

#include <algorithm>

#include "System/Utf8.h"

namespace velmora {

namespace {

constexpr std::size_t mostQuotedBytes = 64;

bool continuesACharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

}  // namespace

void Log::write(LogLevel level, std::string_view area, std::string_view words) const {
  if (sink_) sink_(level, area, plainText(words));
}

std::string quotedForLog(std::string_view text) {
  auto quoted = plainText(text);
  std::replace(quoted.begin(), quoted.end(), '"', '\'');
  if (quoted.size() > mostQuotedBytes) {
    auto end = mostQuotedBytes;
    while (end > 0 && continuesACharacter(quoted[end])) --end;
    quoted.resize(end);
    quoted += "…";
  }
  return '"' + quoted + '"';
}

}  // namespace velmora
