#include "VelmoraApp/Settings/UpdaterService.h"

#include <QtCore/QPointer>

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

UpdaterService& UpdaterService::shared(Desktop& desktop) {
  static QPointer<UpdaterService> service;
  if (service.isNull()) {
    service = new UpdaterService(desktop.makeUpdater(), &Date::now, &desktop);
  }
  return *service;
}

UpdaterService::UpdaterService(std::unique_ptr<PlatformUpdater> updater, Clock now, QObject* parent)
    : QObject(parent), updater_(std::move(updater)), now_(std::move(now)) {
  connect(updater_.get(), &PlatformUpdater::changed, this, &UpdaterService::changed);
  connect(updater_.get(), &PlatformUpdater::updateFound, this, &UpdaterService::updateFound);
}

QDateTime UpdaterService::lastUpdateCheckDateTime() const {
  const auto date = lastUpdateCheckDate();
  if (!date) return {};
  return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(date->unixSeconds() * 1000));
}

QString UpdaterService::lastCheckedText() const {
  const auto date = lastUpdateCheckDate();
  return date ? tr("Last checked %1").arg(timeText(*date, now_())) : QString();
}

void UpdaterService::setAutomaticallyChecksForUpdates(bool automatically) {
  if (isAvailable()) updater_->setAutomaticallyChecksForUpdates(automatically);
  Q_EMIT changed();
}

void UpdaterService::checkForUpdates() {
  if (isAvailable() && !isChecking()) updater_->checkForUpdates();
}

}  // namespace velmora
