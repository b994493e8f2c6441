// "About Velmora" in the menu that a system shows for the whole application.
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtGui/QAction>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <functional>
#include <utility>

namespace velmora {

/// For the main thread, under a QApplication, which tells every window of its own when the language changes.
class AboutMenu final : public QMenuBar {
 public:
  explicit AboutMenu(std::function<void()> show) : about_(addMenu("Velmora")->addAction(caption())) {
    about_->setMenuRole(QAction::AboutRole);  // Qt moves it into the application menu
    connect(about_, &QAction::triggered, this, std::move(show));
  }

  QAction& about() { return *about_; }

 protected:
  void changeEvent(QEvent* event) override {
    if (event->type() == QEvent::LanguageChange) about_->setText(caption());
    QMenuBar::changeEvent(event);
  }

 private:
  static QString caption() { return QCoreApplication::translate("DesktopMac", "About Velmora"); }

  QAction* const about_;
};

}  // namespace velmora
