// Updates, as the settings show them.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QDateTime>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <memory>
#include <optional>

#include "VelmoraApp/Platform/Desktop.h"

namespace velmora {

/// For the main thread.
class UpdaterService : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(bool isAvailable READ isAvailable NOTIFY changed)
  Q_PROPERTY(bool automaticallyChecksForUpdates READ automaticallyChecksForUpdates WRITE
                 setAutomaticallyChecksForUpdates NOTIFY changed)
  Q_PROPERTY(bool isChecking READ isChecking NOTIFY changed)
  Q_PROPERTY(QDateTime lastUpdateCheckDate READ lastUpdateCheckDateTime NOTIFY changed)
  Q_PROPERTY(QString lastCheckedText READ lastCheckedText NOTIFY changed)
  Q_PROPERTY(QString caption READ caption NOTIFY changed)
  Q_PROPERTY(QString checkResult READ checkResult NOTIFY changed)

 public:
  /// The application's own, made when it is first asked for and gone with the desktop.
  static UpdaterService& shared(Desktop& desktop);

  UpdaterService(std::unique_ptr<PlatformUpdater> updater, Clock now, QObject* parent = nullptr);

  bool isAvailable() const { return updater_->isAvailable(); }
  bool automaticallyChecksForUpdates() const { return updater_->automaticallyChecksForUpdates(); }
  bool isChecking() const { return updater_->isChecking(); }
  std::optional<Date> lastUpdateCheckDate() const { return updater_->lastUpdateCheckDate(); }
  QDateTime lastUpdateCheckDateTime() const;  ///< Invalid before the first look.
  QString lastCheckedText() const;            ///< "Last checked " and when; empty before the first look.
  QString caption() const { return updater_->caption(); }
  QString checkResult() const { return updater_->checkResult(); }

  /// Emits changed() even if the choice is refused, so that the switch snaps back.
  Q_INVOKABLE void setAutomaticallyChecksForUpdates(bool automatically);

  /// One check at a time; none where updates are not available.
  Q_INVOKABLE void checkForUpdates();

 Q_SIGNALS:
  void changed();
  void updateFound(const QString& sentence);  ///< By a check that nobody asked for.

 private:
  std::unique_ptr<PlatformUpdater> updater_;
  Clock now_;
};

}  // namespace velmora
