// The updater of a build that has none.
#pragma once

#include "MacPlatform/Updater.h"

namespace velmora::mac {

class NoUpdater final : public Updater {
 public:
  bool isAvailable() const override { return false; }
  bool automaticallyChecksForUpdates() const override { return false; }
  void setAutomaticallyChecksForUpdates(bool) override {}
  void checkForUpdates() override {}
  std::optional<Date> lastUpdateCheckDate() const override { return std::nullopt; }
};

}  // namespace velmora::mac
