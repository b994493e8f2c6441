#include "TerminalAutomation/Tmux/PaneGrid.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace velmora {

namespace {

/// Takes `count` lines off the front; fewer when there are no more.
PaneRows takeRows(std::string_view& rest, std::int64_t count) {
  PaneRows rows;
  for (; count > 0; --count) {
    const auto end = rest.find('\n');
    if (end == std::string_view::npos) break;
    rows.push_back(rest.substr(0, end));
    rest.remove_prefix(end + 1);
  }
  return rows;
}

/// Takes `count` lines off the end.
std::string_view takeEnd(std::string_view& rest, std::int64_t count) {
  auto begin = rest.size();
  for (; count > 0 && begin > 0; --count) {
    const auto before = begin > 1 ? rest.rfind('\n', begin - 2) : std::string_view::npos;
    begin = before == std::string_view::npos ? 0 : before + 1;
  }
  const auto end = rest.substr(begin);
  rest = rest.substr(0, begin);
  return end;
}

}  // namespace

std::optional<PaneGrid> PaneGrid::parse(std::string output, std::optional<std::int64_t> rowsAbove,
                                        bool coloured) {
  std::optional<PaneGrid> result(std::in_place);
  PaneGrid& grid = *result;
  grid.output_ = std::make_shared<const std::string>(std::move(output));
  std::string_view rest = *grid.output_;
  for (auto* const number : {&grid.history_, &grid.columns_, &grid.height_, &grid.limit_}) {
    if (!rest.starts_with('\t')) return std::nullopt;
    const auto [end, error] = std::from_chars(rest.data() + 1, rest.data() + rest.size(), *number);
    if (error != std::errc() || *number < 0) return std::nullopt;
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
  }
  if (!rest.starts_with('\n')) return std::nullopt;
  rest.remove_prefix(1);
  grid.first_ = rowsAbove ? std::max<std::int64_t>(grid.history_ - *rowsAbove, 0) : 0;
  const auto count = grid.history_ + grid.height_ - grid.first_;
  grid.rows_ = takeRows(rest, count);
  if (coloured) {
    auto end = takeEnd(rest, count);
    grid.coloured_ = takeRows(end, count);
    if (std::ssize(grid.coloured_) != count) return std::nullopt;
  }
  if (std::ssize(grid.rows_) != count || !grid.findLines(rest)) return std::nullopt;
  return result;
}

// Joined, the same rows have a line end where a line ends, and some versions of tmux leave out blanks before
// it.
bool PaneGrid::findLines(std::string_view joined) {
  goesOn_.reserve(rows_.size());
  for (const auto row : rows_) {
    const auto text = row.substr(0, row.find_last_not_of(' ') + 1);
    if (!joined.starts_with(text)) return false;
    joined.remove_prefix(text.size());
    joined.remove_prefix(std::min({row.size() - text.size(), joined.find_first_not_of(' '), joined.size()}));
    const bool ends = joined.empty() || joined.front() == '\n';
    goesOn_.push_back(!ends);
    joined.remove_prefix(ends && !joined.empty() ? 1 : 0);
  }
  return joined.empty();
}

std::string PaneGrid::text(std::int64_t from, std::int64_t to) const {
  const auto& rows = coloured_.empty() ? rows_ : coloured_;
  std::string text;
  const auto last = index(std::clamp(to, first_, end()));
  for (auto i = index(std::max(from, first_)); i < last; ++i) {
    text.append(rows[i]);
    if (!goesOn_[i]) text.push_back('\n');
  }
  return text;
}

}  // namespace velmora
