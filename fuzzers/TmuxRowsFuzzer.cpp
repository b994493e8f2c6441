// tmux's answer to a listing, in which programs choose titles and users choose names: it is refused as a
// whole, or every line but the server's became one row, and no field leaked into another.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "TerminalAutomation/Tmux/TmuxRows.h"

namespace {

using namespace velmora;

void checkField(std::string_view field) {
  if (field.find_first_of("\t\n") != std::string_view::npos) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  static_cast<void>(isTooOldTmux(text));
  const auto listing = parseListing(text);
  if (!listing) return 0;
  std::size_t rows = 0;
  for (std::size_t start = 0; start < text.size(); start = text.find('\n', start) + 1) {
    if (text[start] != 'S') ++rows;
  }
  if (rows != listing->panes.size() + listing->clients.size() + listing->buffers.size()) std::abort();
  for (const auto& pane : listing->panes) {
    for (const auto* field :
         {&pane.version, &pane.host, &pane.tty, &pane.sessionName, &pane.windowName, &pane.title}) {
      checkField(*field);
    }
    static_cast<void>(pasteCleans(pane.version));
  }
  for (const auto& client : listing->clients) checkField(client.name);
  for (const auto& buffer : listing->buffers) checkField(buffer.name);
  return 0;
}
