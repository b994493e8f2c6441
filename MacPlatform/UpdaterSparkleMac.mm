#import <Foundation/Foundation.h>
#import <Sparkle/Sparkle.h>

#include "MacPlatform/Updater.h"

namespace velmora::mac {

namespace {

class SparkleUpdater final : public Updater {
 public:
  bool automaticallyChecksForUpdates() const override {
    return [[controller_ updater] automaticallyChecksForUpdates];
  }

  void setAutomaticallyChecksForUpdates(bool automatically) override {
    [[controller_ updater] setAutomaticallyChecksForUpdates:automatically];
  }

  void checkForUpdates() override { [controller_ checkForUpdates:nil]; }

  std::optional<Date> lastUpdateCheckDate() const override {
    NSDate* const date = [[controller_ updater] lastUpdateCheckDate];
    if (date == nil) return std::nullopt;
    return Date{[date timeIntervalSinceReferenceDate]};
  }

 private:
  SPUStandardUpdaterController* const controller_ =
      [[SPUStandardUpdaterController alloc] initWithStartingUpdater:YES
                                                    updaterDelegate:nil
                                                 userDriverDelegate:nil];
};

}  // namespace

std::unique_ptr<Updater> makeUpdater() {
  if (NSClassFromString(@"XCTestCase") != nil) return nullptr;
  return std::make_unique<SparkleUpdater>();
}

}  // namespace velmora::mac
