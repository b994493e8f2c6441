// The menu-bar extra as the system shows it.
#pragma once

#include <QtCore/QString>
#include <QtGui/QIcon>
#include <functional>

class QMenu;

namespace velmora {

/// There from its making to its end, with the tool tip "Velmora". For the main thread.
class TrayIcon {
 public:
  virtual ~TrayIcon() = default;

  /// Only the shape of `icon` counts where the system draws such icons in its own colour.
  virtual void setIcon(const QIcon& icon) = 0;

  /// Shows a sentence as a notification, where those of the application go through its icon.
  virtual void tell(const QString& sentence) = 0;
};

/// What the icon is for.
struct TrayIconUse {
  QMenu& menu;                       ///< Must outlive the icon.
  std::function<void()> openWindow;  ///< For a system on which a click does more than open the menu.
};

}  // namespace velmora
