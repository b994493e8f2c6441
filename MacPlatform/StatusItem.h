// An entry of the menu bar.
#pragma once

#include <memory>
#include <string>

namespace velmora::mac {

/// The side of its image in points: what the menu bar has room for on every Mac.
inline constexpr int statusImageSize = 18;

/// In the menu bar from its making to its end. A click opens its menu and does nothing else. Main thread.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  /// A PNG file's content, of `statusImageSize` points however many pixels it has. Only its shape counts: the
  /// menu bar draws it in a colour of its own.
  virtual void setImage(const std::string& png) = 0;
};

/// `menu` is an NSMenu.
std::unique_ptr<StatusItem> makeStatusItem(const std::string& toolTip, void* menu);

}  // namespace velmora::mac
