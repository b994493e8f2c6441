#include <QtCore/QCoreApplication>
#include <QtGui/QDesktopServices>

#include "VelmoraApp/Updates/PackageKitUpdater.h"

namespace velmora {

std::unique_ptr<PlatformUpdater> makePlatformUpdater() {
  return std::make_unique<PackageKitUpdater>(
      PackageKitUpdaterOptions{.bus = QDBusConnection::systemBus(),
                               .program = QCoreApplication::applicationFilePath(),
                               .defaults = UserDefaults::standard(processEnvironment()),
                               .now = &Date::now,
                               .open = [](const QUrl& address) { QDesktopServices::openUrl(address); }});
}

// PackageKit is started for nobody who did not ask for it.
bool updatesFromTheStart(const UserDefaults& defaults) {
  return defaults.boolean(automaticallyChecksForUpdatesKey, /*absent=*/false);
}

}  // namespace velmora
