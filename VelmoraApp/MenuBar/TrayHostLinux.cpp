#include <QtCore/QTimer>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusServiceWatcher>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QSystemTrayIcon>

#include "VelmoraApp/MenuBar/TrayHost.h"

namespace velmora {

namespace {

constexpr const char* watcherService = "org.kde.StatusNotifierWatcher";
constexpr std::chrono::seconds panelStart{5};

}  // namespace

TrayHost::TrayHost() {
  const auto bus = QDBusConnection::sessionBus();
  if (bus.isConnected()) {
    auto* watcher =
        new QDBusServiceWatcher(watcherService, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { setAvailable(true); });
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { setAvailable(false); });
    setAvailable(bus.interface()->isServiceRegistered(watcherService));
  }
  // A panel of the older kind. Asking settles for the whole run which kind Qt uses, so the newer one, which
  // may be starting together with the session, gets its time first.
  if (isAvailable_ || QGuiApplication::platformName() != "xcb") return;
  auto* timer = new QTimer(this);
  timer->setSingleShot(true);
  connect(timer, &QTimer::timeout, this, [this] {
    if (!isAvailable_ && QSystemTrayIcon::isSystemTrayAvailable()) setAvailable(true);
  });
  timer->start(panelStart);
}

}  // namespace velmora
