// What the window does besides its sections: shows its version, closes, and quits.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>

#include "VelmoraApp/Platform/Desktop.h"

namespace velmora {

/// For the main thread. With a tray or a Dock, closing hides the window and the bridge keeps running. Without
/// one the user could no longer reach it, so closing quits, after asking.
class MainWindowViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by ViewModels")
  Q_PROPERTY(QString applicationName READ applicationName CONSTANT)
  Q_PROPERTY(QString applicationVersion READ applicationVersion CONSTANT)
  Q_PROPERTY(QString notices READ notices NOTIFY explainsClosingChanged)
  Q_PROPERTY(QString closeExplanation READ closeExplanation NOTIFY explainsClosingChanged)
  Q_PROPERTY(bool explainsClosing READ explainsClosing NOTIFY explainsClosingChanged)

 public:
  /// `desktop` must outlive it.
  explicit MainWindowViewModel(Desktop& desktop) : desktop_(desktop) {}

  QString applicationName() const;
  QString applicationVersion() const;
  QString notices() const;  ///< Whose work it is, and under which licences.
  QString closeExplanation() const;
  bool explainsClosing() const { return explainsClosing_; }

  /// Whether the application is in the tray, and whether there is a place for it.
  void setTray(bool isShown, bool hasPlace) {
    hasTray_ = isShown;
    hasTrayPlace_ = hasPlace;
  }

  /// Shows name and version in the system's own panel; false when the window has to show them.
  Q_INVOKABLE bool showAbout() { return desktop_.showAboutPanel(); }
  /// Whether the window may close now.
  Q_INVOKABLE bool closeRequested();
  Q_INVOKABLE void confirmClosing();
  Q_INVOKABLE void cancelClosing();
  Q_INVOKABLE void quit();

 Q_SIGNALS:
  void explainsClosingChanged();
  void quitRequested();

 private:
  void setExplainsClosing(bool explains);

  Desktop& desktop_;
  bool hasTray_ = false;
  bool hasTrayPlace_ = false;
  bool explainsClosing_ = false;
};

}  // namespace velmora
