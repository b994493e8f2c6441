// What `velmora watch` shows: lines of styled text, whatever draws them.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velmora {

/// By role; the terminal decides how each looks, with colour and without.
enum class WatchStyle {
  plain,
  title,    ///< The first line.
  heading,  ///< Of a list.
  faint,    ///< What matters less.
  good,
  warning,   ///< Something is withheld or refused.
  bad,       ///< Something is wrong.
  selected,  ///< The line that keys act upon.
};

struct WatchRun {
  std::string text{};  ///< As `shownText` makes it.
  WatchStyle style = WatchStyle::plain;

  bool operator==(const WatchRun&) const = default;
};

using WatchLine = std::vector<WatchRun>;

struct WatchSize {
  int columns = 80;
  int rows = 24;

  bool operator==(const WatchSize&) const = default;
};

/// As many lines as the size has rows, none wider than it has columns.
struct WatchScreen {
  std::vector<WatchLine> lines{};
  std::optional<int> cursor{};  ///< The column in the last line at which the user types; none is shown else.
};

/// A key that was pressed.
enum class WatchKey { none, up, down, pageUp, pageDown, home, end, tab, enter, escape, backspace, character };

struct WatchInput {
  WatchKey key = WatchKey::none;
  std::string character{};  ///< UTF-8, of `character` only.
};

}  // namespace velmora
