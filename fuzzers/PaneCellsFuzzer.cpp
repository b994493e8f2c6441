// What tmux hands over of a pane may hold anything: the grid must come out whole.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "System/Utf8.h"
#include "TerminalAutomation/Tmux/Picture/PaneCells.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace velmora;
  if (size < 2) return 0;
  const int columns = data[0] % 40;
  const int rows = data[1] % 12;
  const auto cells = parsePaneCells({reinterpret_cast<const char*>(data + 2), size - 2}, columns, rows);
  for (int row = 0; row < cells.rows(); ++row) {
    for (int column = 0; column < cells.columns(); ++column) {
      const auto& cell = cells.at(column, row);
      if (cell.width < 0 || cell.width > 2 || column + cell.width > cells.columns()) std::abort();
      if (cell.text.size() > PaneCell::maximumBytes || !isValidUtf8(cell.text)) std::abort();
      if (!cell.text.empty()) static_cast<void>(firstCodePoint(cell.text));
    }
  }
  return 0;
}
