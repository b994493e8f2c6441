// The menu-bar extra: the state at a glance, the pause switch, and the way to the window.
#pragma once

#include <QtCore/QObject>
#include <QtWidgets/QMenu>
#include <memory>

#include "VelmoraApp/Shell/MenuBarViewModel.h"

namespace velmora {

/// For the main thread. Make it only once the desktop has a place for it.
class VelmoraMenuBar : public QObject {
  Q_OBJECT

 public:
  /// Both must outlive it.
  VelmoraMenuBar(MenuBarViewModel& viewModel, Desktop& desktop);

  const QMenu& menu() const { return menu_; }

  void retranslate();

  /// Shows a sentence as a desktop notification.
  void tell(const QString& sentence) { icon_->tell(sentence); }

 Q_SIGNALS:
  void openRequested();

 private:
  void showPermissionPanes();
  void update();

  MenuBarViewModel& viewModel_;
  QMenu menu_;
  std::unique_ptr<TrayIcon> icon_;
  QString symbol_;
  QAction* state_;
  QAction* clients_;
  QAction* sessions_;
  QAction* error_;
  QAction* pause_;
  QAction* open_;
  QMenu* panes_;
};

}  // namespace velmora
