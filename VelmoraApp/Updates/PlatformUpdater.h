// Looks for new versions of the application by the means of the platform.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <memory>
#include <optional>

#include "BridgeModels/Date.h"
#include "VelmoraApp/AppModel/UserDefaults.h"

namespace velmora {

/// For the main thread, and never blocks it. Where it is not available, all else does nothing.
class PlatformUpdater : public QObject {
  Q_OBJECT

 public:
  virtual bool isAvailable() const = 0;

  virtual bool automaticallyChecksForUpdates() const = 0;
  virtual void setAutomaticallyChecksForUpdates(bool automatically) = 0;

  /// Looks now, because the person asked to.
  virtual void checkForUpdates() = 0;
  virtual bool isChecking() const = 0;

  /// Nothing before the first look.
  virtual std::optional<Date> lastUpdateCheckDate() const = 0;

  /// Where updates come from, or why they cannot be looked for; a sentence.
  virtual QString caption() const = 0;

  /// What came of the last look; a sentence. Empty when the platform tells the person by itself.
  virtual QString checkResult() const = 0;

 Q_SIGNALS:
  /// Any of the above may answer differently now.
  void changed();

  /// Nobody was asked to wait for it: a check of its own found a version that it has not told of. A sentence.
  void updateFound(const QString& sentence);
};

/// The running application's own. Keeps the person's choice with the application's user defaults.
std::unique_ptr<PlatformUpdater> makePlatformUpdater();

/// Whether it has something to do before anybody asks for it.
bool updatesFromTheStart(const UserDefaults& defaults);

}  // namespace velmora
