// The menu-bar extra: the state at a glance, the pause switch, and the way to the window.
#pragma once

#include <QtCore/QObject>
#include <QtWidgets/QMenu>
#include <QtWidgets/QSystemTrayIcon>

#include "VelmoraApp/Shell/MenuBarViewModel.h"

namespace velmora {

/// For the main thread. Make it only once there is a tray: Qt looks for one at first use and never again.
class VelmoraMenuBar : public QObject {
  Q_OBJECT

 public:
  /// `viewModel` must outlive it.
  explicit VelmoraMenuBar(MenuBarViewModel& viewModel);

  const QMenu& menu() const { return menu_; }

  /// Shows a sentence as a desktop notification.
  void tell(const QString& sentence) { icon_.showMessage("Velmora", sentence, icon_.icon()); }

 Q_SIGNALS:
  void openRequested();

 private:
  void addPermissionPanes();
  void update();

  MenuBarViewModel& viewModel_;
  QMenu menu_;
  QSystemTrayIcon icon_;
  QString symbol_;
  QAction* state_;
  QAction* clients_;
  QAction* sessions_;
  QAction* error_;
  QAction* pause_;
};

}  // namespace velmora
