// What the window server says of the windows on the screen: the one witness of what the user sees. Terminal's
// own word on what is in front can be old.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace velmora {

/// A window that is on the screen, also where others cover it. Windows in the Dock, hidden ones, those on
/// another Space and tabs behind another of their group are not.
struct ScreenWindow {
  std::int64_t number = 0;  ///< Terminal's window ids are these numbers.
  std::int64_t layer = 0;   ///< 0 for ordinary windows; the menu bar, panels and notifications lie above.
};

/// From front to back.
using ScreenWindows = std::vector<ScreenWindow>;

/// Asks for numbers and layers only, for which the system wants no permission. Empty without a window server.
/// Only on macOS. Any thread.
ScreenWindows systemScreenWindows();

inline bool isOnScreen(const ScreenWindows& windows, std::int64_t number) {
  return std::ranges::find(windows, number, &ScreenWindow::number) != windows.end();
}

/// Whether this is the first of all ordinary windows, whosever they are.
inline bool isFirstOnScreen(const ScreenWindows& windows, std::int64_t number) {
  const auto first = std::ranges::find(windows, 0, &ScreenWindow::layer);
  return first != windows.end() && first->number == number;
}

}  // namespace velmora
