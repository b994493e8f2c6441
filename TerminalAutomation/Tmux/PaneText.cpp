#include "TerminalAutomation/Tmux/PaneText.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "System/Utf8.h"

namespace velmora {

std::string tidyPaneText(std::string captured) {
  // In place: the text only gets shorter, and histories are long.
  char* out = captured.data();
  char* endOfText = out;  // after the last line that is not empty
  const char* line = captured.data();
  const char* const end = line + captured.size();
  while (line < end) {
    const void* const found = std::memchr(line, '\n', static_cast<std::size_t>(end - line));
    const char* const lineEnd = found != nullptr ? static_cast<const char*>(found) : end;
    const char* last = lineEnd;
    while (last > line && (last[-1] == ' ' || last[-1] == '\t')) --last;
    const auto length = static_cast<std::size_t>(last - line);
    std::memmove(out, line, length);
    out += length;
    if (length > 0) endOfText = out;
    line = std::min(lineEnd + 1, end);
    if (line < end) *out++ = '\n';
  }
  captured.resize(static_cast<std::size_t>(endOfText - captured.data()));
  if (!isValidUtf8(captured)) captured = repairUtf8(captured);
  return captured;
}

TextEnd boundedEnd(std::string_view text, std::int64_t maxCharacters) {
  constexpr std::int64_t bytesPerCharacter = 8;
  constexpr std::int64_t bytesOfAFew = 256;  // the longest emoji have some forty bytes
  constexpr std::int64_t mostBytes = 900'000;
  TextEnd end = lastCharacters(text, maxCharacters);
  const std::int64_t allowed = std::min(
      mostBytes, bytesOfAFew + bytesPerCharacter * std::clamp(maxCharacters, std::int64_t{0}, mostBytes));
  if (end.text.size() <= static_cast<std::size_t>(allowed)) return end;
  end.text.remove_prefix(end.text.size() - static_cast<std::size_t>(allowed));
  while (!end.text.empty() && (static_cast<unsigned char>(end.text.front()) & 0xC0u) == 0x80u)
    end.text.remove_prefix(1);
  end.totalCharacters = std::max(end.totalCharacters, characterCount(end.text) + 1);
  return end;
}

}  // namespace velmora
