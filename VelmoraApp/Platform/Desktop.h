// What the desktop offers the application: one interface for everything that differs between systems.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <memory>
#include <string>
#include <utility>

#include "System/Environment.h"
#include "System/Log.h"
#include "VelmoraApp/Platform/PlatformUpdater.h"
#include "VelmoraApp/Platform/StartupPermissionPrompter.h"
#include "VelmoraApp/Platform/TrayIcon.h"
#include "VelmoraApp/Platform/UserDefaults.h"

namespace velmora {

/// The terminal that the texts speak of. What the screens say follows from it, never from the system.
enum class GuidedTerminal { terminalApp, tmux };

/// What the texts have to know about this computer.
struct GuideContext {
  GuidedTerminal terminal;
  QStringList preferredLanguages;  ///< Tags such as "ko-KR", the most preferred one first.
  QString installPath;
  std::string helperPath;     ///< Where MCP clients find the helper: an absolute path in UTF-8.
  bool helperIsThere = true;  ///< Whether there is a program at that path.
};

/// The panes of System Settings in which the user gives the application its permissions.
enum class SystemSettingsLink { accessibility, automation, screenRecording };

constexpr const char* urlOf(SystemSettingsLink link) {
  switch (link) {
    case SystemSettingsLink::accessibility:
      return "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";
    case SystemSettingsLink::automation:
      return "x-apple.systempreferences:com.apple.preference.security?Privacy_Automation";
    case SystemSettingsLink::screenRecording:
      break;
  }
  return "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture";
}

/// For the main thread.
class Desktop : public QObject {
  Q_OBJECT

 public:
  explicit Desktop(Log log = {}) : log_(std::move(log)) {}

  const Log& log() const { return log_; }

  /// To be called once, under a QApplication: looks for a place for the menu-bar extra from now on, and puts
  /// "About Velmora" into the application menu where the system has one.
  virtual void start() = 0;

  virtual GuideContext guideContext() const = 0;
  virtual UserDefaults& userDefaults() = 0;
  virtual StartupPermissionPrompter permissionPrompter() const = 0;

  /// Whether the application starts when the user logs in. Others change it too, so the system is asked each
  /// time.
  virtual bool startsAtLogin() const = 0;
  /// Throws what derives from std::exception when the system refuses; then nothing has changed.
  virtual void setStartsAtLogin(bool starts) = 0;

  virtual std::unique_ptr<PlatformUpdater> makeUpdater() = 0;
  /// Whether the updater has something to do before the settings are opened.
  virtual bool updatesFromTheStart() = 0;

  /// Whether there is a place for the menu-bar extra. A panel may start after the application, and end before
  /// it.
  bool hasTrayPlace() const { return hasTrayPlace_; }
  /// Only once there is a place: Qt looks for one at the first icon and never again.
  virtual std::unique_ptr<TrayIcon> makeTrayIcon(TrayIconUse use) = 0;

  /// Whether the application keeps an icon outside of its window and of the menu bar, such as the Dock's,
  /// that leads back to the window.
  virtual bool hasDockIcon() const = 0;

  /// Opens the system's own panel with name and version. False where there is none: the window shows them
  /// then.
  virtual bool showAboutPanel() = 0;
  /// Does nothing on a system without these panes.
  virtual void openSettingsPane(SystemSettingsLink link) = 0;

 Q_SIGNALS:
  void trayPlaceChanged();

 protected:
  void setHasTrayPlace(bool hasPlace) {
    if (hasPlace == hasTrayPlace_) return;
    hasTrayPlace_ = hasPlace;
    Q_EMIT trayPlaceChanged();
  }

 private:
  const Log log_;
  bool hasTrayPlace_ = false;
};

/// The desktop that this program runs on. Needs the application's object. Throws std::runtime_error when the
/// environment does not say where user defaults are kept.
std::unique_ptr<Desktop> makeDesktop(const Environment& environment, const Log& log = {});

}  // namespace velmora
