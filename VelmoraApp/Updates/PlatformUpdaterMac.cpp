#include <QtCore/QTimer>
#include <chrono>
#include <utility>

#include "MacPlatform/Updater.h"
#include "VelmoraApp/Updates/PlatformUpdater.h"

namespace velmora {

namespace {

// The updater tells nobody when it has looked, by itself or in its own windows.
constexpr std::chrono::seconds lookAgain{5};

class FrameworkUpdater final : public PlatformUpdater {
 public:
  FrameworkUpdater() {
    connect(&timer_, &QTimer::timeout, this, [this] {
      const auto date = lastUpdateCheckDate();
      if (std::exchange(shownDate_, date) != date) Q_EMIT changed();
    });
    if (updater_->isAvailable()) timer_.start(lookAgain);
  }

  bool isAvailable() const override { return updater_->isAvailable(); }
  bool automaticallyChecksForUpdates() const override { return updater_->automaticallyChecksForUpdates(); }
  void setAutomaticallyChecksForUpdates(bool automatically) override {
    updater_->setAutomaticallyChecksForUpdates(automatically);
    Q_EMIT changed();
  }
  void checkForUpdates() override { updater_->checkForUpdates(); }
  bool isChecking() const override { return false; }  // its own windows say so
  std::optional<Date> lastUpdateCheckDate() const override { return updater_->lastUpdateCheckDate(); }

  QString caption() const override {
    return isAvailable() ? "Updates are downloaded from the maker's update source and installed only after "
                           "you approve them."
                         : "This build of Velmora has no updater.";
  }
  QString checkResult() const override { return {}; }

 private:
  const std::unique_ptr<mac::Updater> updater_ = mac::makeUpdater();
  std::optional<Date> shownDate_ = updater_->lastUpdateCheckDate();
  QTimer timer_;
};

}  // namespace

std::unique_ptr<PlatformUpdater> makePlatformUpdater() { return std::make_unique<FrameworkUpdater>(); }

// It keeps the person's choice itself, and follows it from when it is made.
bool updatesFromTheStart(const UserDefaults&) { return true; }

}  // namespace velmora
