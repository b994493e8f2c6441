#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QTimer>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusServiceWatcher>
#include <QtGui/QDesktopServices>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QSystemTrayIcon>
#include <stdexcept>

#include "VelmoraApp/Platform/AutostartEntry.h"
#include "VelmoraApp/Platform/Desktop.h"
#include "VelmoraApp/Platform/PackageKitUpdater.h"

namespace velmora {

namespace {

constexpr const char* trayWatcher = "org.kde.StatusNotifierWatcher";
constexpr std::chrono::seconds panelStart{5};

QString defaultsFile(const Environment& environment) {
  const auto directory = baseDirectory(environment, "XDG_CONFIG_HOME", ".config");
  if (directory.empty()) throw std::runtime_error("neither XDG_CONFIG_HOME nor HOME names a directory");
  return QString::fromStdString((directory / "Velmora" / "Velmora.conf").string());
}

// Qt itself follows a panel that starts again.
class LinuxTrayIcon final : public TrayIcon {
 public:
  explicit LinuxTrayIcon(const TrayIconUse& use) {
    QObject::connect(&icon_, &QSystemTrayIcon::activated, &icon_,
                     [open = use.openWindow](QSystemTrayIcon::ActivationReason reason) {
                       if (reason == QSystemTrayIcon::Trigger) open();
                     });
    icon_.setToolTip("Velmora");
    icon_.setContextMenu(&use.menu);
  }

  void setIcon(const QIcon& icon) override {
    icon_.setIcon(icon);
    icon_.show();  // without an icon Qt shows none
  }
  void tell(const QString& sentence) override { icon_.showMessage("Velmora", sentence, icon_.icon()); }

 private:
  QSystemTrayIcon icon_;
};

class LinuxDesktop final : public Desktop {
 public:
  LinuxDesktop(const Environment& environment, const Log& log)
      : Desktop(log),
        defaults_(defaultsFile(environment)),
        autostart_(files_, environment, QCoreApplication::applicationFilePath().toStdString()) {
    try {
      autostart_.followProgram();
    } catch (const std::exception& error) {
      log.warning("login item", std::string("it still names the program's old place: ") + error.what());
    }
  }

  void start() override {
    const auto bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
      auto* watcher =
          new QDBusServiceWatcher(trayWatcher, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
      connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { setHasTrayPlace(true); });
      connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { setHasTrayPlace(false); });
      setHasTrayPlace(bus.interface()->isServiceRegistered(trayWatcher));
    }
    // A panel of the older kind. Qt decides for good at the first question which kind it uses, so the newer
    // one, which may start together with the session, gets some time first.
    if (hasTrayPlace() || QGuiApplication::platformName() != "xcb") return;
    QTimer::singleShot(panelStart, this, [this] {
      if (!hasTrayPlace() && QSystemTrayIcon::isSystemTrayAvailable()) setHasTrayPlace(true);
    });
  }

  std::unique_ptr<TrayIcon> makeTrayIcon(TrayIconUse use) override {
    return std::make_unique<LinuxTrayIcon>(use);
  }

  GuideContext guideContext() const override {
    const QFileInfo helper(QDir(QCoreApplication::applicationDirPath()), "velmora");
    return {.terminal = GuidedTerminal::tmux,
            .preferredLanguages = QLocale::system().uiLanguages(),
            .installPath = QCoreApplication::applicationFilePath(),
            .helperPath = helper.filePath().toStdString(),
            .helperIsThere = helper.isExecutable()};
  }

  UserDefaults& userDefaults() override { return defaults_; }

  // A terminal multiplexer of the same user needs no permission of the system.
  StartupPermissionPrompter permissionPrompter() const override { return {}; }

  bool startsAtLogin() const override { return autostart_.isEnabled(); }
  void setStartsAtLogin(bool starts) override { autostart_.setEnabled(starts); }

  std::unique_ptr<PlatformUpdater> makeUpdater() override {
    return std::make_unique<PackageKitUpdater>(
        PackageKitUpdaterOptions{.bus = QDBusConnection::systemBus(),
                                 .program = QCoreApplication::applicationFilePath(),
                                 .defaults = defaults_,
                                 .now = &Date::now,
                                 .log = log(),
                                 .open = [](const QUrl& address) { QDesktopServices::openUrl(address); }});
  }
  // PackageKit is not started for a user who did not ask for it.
  bool updatesFromTheStart() override {
    return defaults_.boolean(automaticallyChecksForUpdatesKey, /*absent=*/false);
  }

  bool hasDockIcon() const override { return false; }
  bool showAboutPanel() override { return false; }
  void openSettingsPane(SystemSettingsLink) override {}

 private:
  IniFileDefaults defaults_;
  PosixFileSystem files_;
  AutostartEntry autostart_;
};

}  // namespace

std::unique_ptr<Desktop> makeDesktop(const Environment& environment, const Log& log) {
  return std::make_unique<LinuxDesktop>(environment, log);
}

}  // namespace velmora
