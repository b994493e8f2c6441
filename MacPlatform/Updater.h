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

  /// False for a build without an updater, in which all else does nothing.
  virtual bool isAvailable() const = 0;

  virtual bool automaticallyChecksForUpdates() const = 0;
  virtual void setAutomaticallyChecksForUpdates(bool automatically) = 0;

  /// Looks now and tells the person what it found, in windows of its own.
  virtual void checkForUpdates() = 0;

  /// Nothing before the first look.
  virtual std::optional<Date> lastUpdateCheckDate() const = 0;
};

/// Starts the updater; without one in this build, or under a unit-test harness, the one that does nothing.
std::unique_ptr<Updater> makeUpdater();

}  // namespace velmora::mac
