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
  return isValidUtf8(captured) ? captured : repairUtf8(captured);
}

}  // namespace velmora
