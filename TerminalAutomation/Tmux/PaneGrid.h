// The rows of a pane and which of them belong to one line. Pure.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

using PaneRows = std::vector<std::string_view>;

/// Rows count from the oldest of the history on, so that a row keeps its number while the history grows.
/// Everything was so in one turn of the server.
class PaneGrid {
 public:
  /// From what `readGrid` prints after guardPassed, with the same `rowsAbove`. Nothing when it is something
  /// else.
  static std::optional<PaneGrid> parse(std::string output, std::optional<std::int64_t> rowsAbove,
                                       bool coloured);

  std::int64_t history() const { return history_; }  ///< The screen's first row.
  std::int64_t columns() const { return columns_; }
  std::int64_t first() const { return first_; }  ///< Of the rows that are here.
  std::int64_t end() const { return first_ + std::ssize(rows_); }

  /// tmux drops a tenth of a history that is full, and the other rows get new numbers.
  std::int64_t dropped() const { return limit_ / 10 > 1 ? limit_ / 10 : 1; }
  bool mayHaveDropped() const { return history_ + dropped() >= limit_; }

  /// A row that is here, as it stands, with its blanks.
  std::string_view row(std::int64_t number) const { return rows_[index(number)]; }
  /// Whether its line goes on in the next row.
  bool goesOn(std::int64_t number) const { return goesOn_[index(number)]; }

  /// The text from a row on and before another, with wrapped lines joined; with colours, if it was read with
  /// them.
  std::string text(std::int64_t from, std::int64_t to = std::numeric_limits<std::int64_t>::max()) const;

 private:
  bool findLines(std::string_view joined);
  std::size_t index(std::int64_t number) const { return static_cast<std::size_t>(number - first_); }

  std::shared_ptr<const std::string> output_{};  // what the rows point into
  std::int64_t history_ = 0;
  std::int64_t columns_ = 0;
  std::int64_t height_ = 0;
  std::int64_t limit_ = 0;
  std::int64_t first_ = 0;
  PaneRows rows_{};
  PaneRows coloured_{};
  std::vector<bool> goesOn_{};
};

}  // namespace velmora
