#include "TerminalAutomation/Tmux/PaneCursor.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace velmora {

namespace {

constexpr std::int64_t mostAbove = 16;
constexpr char mark = 't';
constexpr int base = 36;

// FNV-1a. Whoever forges one cheats a reader of their own output.
class Hash {
 public:
  void add(std::string_view text) {
    for (const char character : text) addByte(static_cast<unsigned char>(character));
    addByte('\n');
  }
  void add(std::int64_t number) { add(std::to_string(number)); }
  std::uint64_t value() const { return value_; }

 private:
  void addByte(unsigned char byte) { value_ = (value_ ^ byte) * 0x100000001B3U; }
  std::uint64_t value_ = 0xCBF29CE484222325U;
};

std::string_view trimmed(std::string_view text) {
  const auto end = text.find_last_not_of(" \t");
  return end == std::string_view::npos ? std::string_view() : text.substr(0, end + 1);
}

// What the rows above a row of a pane say.
std::uint64_t anchorOf(const PaneGrid& grid, const PaneRow& pane, std::int64_t row, std::int64_t above) {
  Hash hash;
  hash.add(pane.serverStart);
  hash.add(pane.pane);
  hash.add(pane.tty);
  hash.add(grid.columns());
  for (auto each = row - above; each < row; ++each) hash.add(trimmed(grid.row(each)));
  return hash.value();
}

}  // namespace

std::string PaneCursor::toString() const {
  std::string text(1, mark);
  const auto add = [&text](auto number) {
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, base).ptr;
    if (text.size() > 1) text.push_back('-');
    text.append(digits.data(), end);
  };
  add(row);
  add(columns);
  add(above);
  add(anchor);
  add(line);
  return text;
}

std::optional<PaneCursor> PaneCursor::parse(std::string_view text) {
  if (!text.starts_with(mark)) return std::nullopt;
  const char* next = text.data() + 1;
  const char* const end = text.data() + text.size();
  const auto read = [&next, end](auto& number) {
    const auto [after, error] = std::from_chars(next, end, number, base);
    if (error != std::errc() || number < 0) return false;
    next = after;
    return true;
  };
  const auto readNext = [&](auto& number) { return next != end && *next++ == '-' && read(number); };
  PaneCursor cursor;
  constexpr std::int64_t mostRows = std::int64_t{1} << 40;
  const bool isWhole = read(cursor.row) && readNext(cursor.columns) && readNext(cursor.above) &&
                       readNext(cursor.anchor) && readNext(cursor.line) && next == end;
  if (!isWhole || cursor.row > mostRows || cursor.above > std::min(mostAbove, cursor.row))
    return std::nullopt;
  return cursor;
}

std::uint32_t markOf(std::string_view line) {
  Hash hash;
  hash.add(trimmed(line));
  return static_cast<std::uint32_t>(hash.value() ^ (hash.value() >> 32));
}

std::optional<PaneCursor> PaneCursor::atEndOf(const PaneGrid& grid, const PaneRow& pane) {
  auto last = grid.end() - 1;
  while (last >= grid.first() && trimmed(grid.row(last)).empty()) --last;
  auto row = std::max(last, grid.first());
  while (row > grid.first() && grid.goesOn(row - 1)) --row;
  // A line may begin above what is here; an empty screen does not tell where the next line will.
  if (row == grid.first() && row > 0) return std::nullopt;
  std::string line;
  for (auto each = row; each <= last; ++each) line += grid.row(each);
  PaneCursor cursor{.row = row, .columns = grid.columns(), .line = markOf(line)};
  cursor.above = std::min(mostAbove, row - grid.first());
  cursor.anchor = anchorOf(grid, pane, row, cursor.above);
  return cursor;
}

std::optional<std::int64_t> PaneCursor::find(const PaneGrid& grid, const PaneRow& pane) const {
  if (grid.columns() != columns || (grid.mayHaveDropped() ? above == 0 : row >= grid.end()))
    return std::nullopt;
  // A client may say any row: those below the last one are passed over in one step.
  const auto drops = row < grid.end() ? 0 : (row - grid.end()) / grid.dropped() + 1;
  std::optional<std::int64_t> found;
  for (auto place = row - drops * grid.dropped(); place - above >= grid.first(); place -= grid.dropped()) {
    if (anchorOf(grid, pane, place, above) == anchor) {
      if (found) return std::nullopt;
      found = place;
    }
    if (!grid.mayHaveDropped()) break;
  }
  return found;
}

}  // namespace velmora
