// Looks for new versions of the application by the means of the platform.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <optional>

#include "BridgeModels/Date.h"

namespace velmora {

/// For the main thread, which it never blocks. While it is not available, everything else does nothing.
class PlatformUpdater : public QObject {
  Q_OBJECT

 public:
  virtual bool isAvailable() const = 0;

  /// Kept with the application's user defaults.
  virtual bool automaticallyChecksForUpdates() const = 0;
  virtual void setAutomaticallyChecksForUpdates(bool automatically) = 0;

  /// Checks now, because the user asked for it.
  virtual void checkForUpdates() = 0;
  virtual bool isChecking() const = 0;

  /// Nothing before the first check.
  virtual std::optional<Date> lastUpdateCheckDate() const = 0;

  /// Where updates come from, or why they cannot be looked for; a sentence.
  virtual QString caption() const = 0;

  /// The result of the last check; a sentence. Empty when the platform tells the user by itself.
  virtual QString checkResult() const = 0;

 Q_SIGNALS:
  /// Any of the values above may have changed.
  void changed();

  /// An automatic check found a version not announced before. The sentence to show.
  void updateFound(const QString& sentence);
};

}  // namespace velmora
