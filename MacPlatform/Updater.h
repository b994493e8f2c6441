// Looks for new versions of the application.
#pragma once

#include <memory>
#include <optional>

#include "BridgeModels/Date.h"

namespace velmora::mac {

/// Main thread only. Every change is kept by the updater itself.
class Updater {
 public:
  virtual ~Updater() = default;

  virtual bool automaticallyChecksForUpdates() const = 0;
  virtual void setAutomaticallyChecksForUpdates(bool automatically) = 0;

  /// Looks now and tells the user what it found, in windows of its own.
  virtual void checkForUpdates() = 0;

  /// Nothing before the first look.
  virtual std::optional<Date> lastUpdateCheckDate() const = 0;
};

/// Starts the updater; null in a build without one, and under a unit-test harness.
std::unique_ptr<Updater> makeUpdater();

}  // namespace velmora::mac
