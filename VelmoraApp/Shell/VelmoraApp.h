// The application: owns the model, the window and the menu-bar extra for the life of the process.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QSignalBlocker>
#include <optional>

#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/AppModel/FirstRunController.h"
#include "VelmoraApp/AppModel/LanguagePreference.h"
#include "VelmoraApp/AppModel/MenuBarPreference.h"
#include "VelmoraApp/AppModel/Translation.h"
#include "VelmoraApp/Navigation/ViewModels.h"
#include "VelmoraApp/Shell/DockReopening.h"
#include "VelmoraApp/Shell/ExitHandler.h"
#include "VelmoraApp/Shell/MainWindow.h"
#include "VelmoraApp/Shell/VelmoraMenuBar.h"

namespace velmora {

/// For the main thread, under a QApplication.
class VelmoraApp : public QObject {
  Q_OBJECT

 public:
  /// Builds and starts the bridge. Throws what AppModel throws.
  explicit VelmoraApp(const Environment& environment, const Log& log = {});

  /// Opens the window, or brings it forward.
  void openWindow(const QByteArray& activationToken = {}) { window_.show(activationToken); }

  void pause() { model_.setPaused(true); }

  /// Null before the window was opened.
  QQuickWindow* window() const { return window_.window(); }

 Q_SIGNALS:
  /// A library ends the process: the bridge has ended, and no destructor will run.
  void left();

 private:
  void updateMenuBar();
  void speak();
  UpdaterService& updater();
  void tellOfUpdate(const QString& sentence);

  const std::unique_ptr<Desktop> desktop_;
  LanguagePreference language_;
  std::unique_ptr<Translation> translation_;  // before all that says something
  FirstRunController firstRun_;
  MenuBarPreference menuBarPreference_;
  LaunchAtLoginController launchAtLogin_;
  AppModel model_;
  ViewModels viewModels_;
  MainWindow window_;
  MenuBarViewModel menuBarViewModel_;
  std::optional<VelmoraMenuBar> menuBar_;
  std::optional<DockReopening> reopening_;
  const ExitHandler exitHandler_{[this] {
    const QSignalBlocker quiet(model_);  // the screens draw no more: parts of Qt have ended by then
    model_.prepareForTermination();
    Q_EMIT left();
  }};
};

}  // namespace velmora
