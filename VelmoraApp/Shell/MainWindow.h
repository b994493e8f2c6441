// The window on the screen. Its QML engine is created when it is first shown, so an application in the tray
// stays small.
#pragma once

#include <QtCore/QByteArray>
#include <QtQml/QQmlApplicationEngine>
#include <memory>

class QQuickWindow;

namespace velmora {

class ViewModels;

/// For the main thread.
class MainWindow {
 public:
  /// `viewModels` must outlive it.
  explicit MainWindow(ViewModels& viewModels) : viewModels_(viewModels) {}
  ~MainWindow();

  /// Brings the window forward. `activationToken` is the desktop's permission to do so, if there is one.
  /// Throws std::runtime_error when the window cannot be made.
  void show(const QByteArray& activationToken = {});

  /// Shows the texts that are its own anew; those of the view models follow their signals.
  void retranslate();

  /// Null before the first `show`.
  QQuickWindow* window() const { return window_; }

 private:
  void load();

  ViewModels& viewModels_;
  std::unique_ptr<QQmlApplicationEngine> engine_;
  QQuickWindow* window_ = nullptr;  // the engine's
};

}  // namespace velmora
