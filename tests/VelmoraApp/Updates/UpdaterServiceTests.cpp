#include <gtest/gtest.h>

#include <QtTest/QSignalSpy>

#include "VelmoraApp/AppModel/TimeText.h"
#include "VelmoraApp/Updates/UpdaterService.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

struct FakeState {
  bool available = true;
  bool automatic = false;
  bool refuses = false;
  bool checking = false;
  int checks = 0;
  std::optional<Date> lastCheck{};
};

class FakeUpdater final : public PlatformUpdater {
 public:
  explicit FakeUpdater(FakeState& state) : state_(state) {}
  bool isAvailable() const override { return state_.available; }
  bool automaticallyChecksForUpdates() const override { return state_.automatic; }
  void setAutomaticallyChecksForUpdates(bool automatically) override {
    if (!state_.refuses) state_.automatic = automatically;
  }
  void checkForUpdates() override { ++state_.checks; }
  bool isChecking() const override { return state_.checking; }
  std::optional<Date> lastUpdateCheckDate() const override { return state_.lastCheck; }
  QString caption() const override { return "a caption"; }
  QString checkResult() const override { return "a result"; }

 private:
  FakeState& state_;
};

class UpdaterServiceTest : public ::testing::Test {
 protected:
  FakeState state;
  FakeUpdater* updater = new FakeUpdater(state);  // the service's
  UpdaterService service{std::unique_ptr<PlatformUpdater>(updater), [] { return Date{800000000}; }};
};

TEST_F(UpdaterServiceTest, ShowsWhatThePlatformSays) {
  state = {.automatic = true, .checking = true, .lastCheck = Date{799999000}};
  EXPECT_TRUE(service.property("isAvailable").toBool());
  EXPECT_TRUE(service.property("automaticallyChecksForUpdates").toBool());
  EXPECT_TRUE(service.property("isChecking").toBool());
  EXPECT_EQ(service.property("caption"), "a caption");
  EXPECT_EQ(service.property("checkResult"), "a result");
  EXPECT_EQ(service.property("lastUpdateCheckDate").toDateTime().toMSecsSinceEpoch(),
            static_cast<qint64>(Date{799999000}.unixSeconds() * 1000));
  EXPECT_EQ(service.property("lastCheckedText"),
            "Last checked " + timeText(Date{799999000}, Date{800000000}));
}

TEST_F(UpdaterServiceTest, HasNoDateBeforeTheFirstCheck) {
  EXPECT_FALSE(service.lastUpdateCheckDateTime().isValid());
  EXPECT_EQ(service.lastCheckedText(), "");
}

TEST_F(UpdaterServiceTest, TellsOfThePlatformsChangesAndOfRefusals) {
  const QSignalSpy changes(&service, &UpdaterService::changed);
  Q_EMIT updater->changed();
  EXPECT_EQ(changes.count(), 1);
  state.refuses = true;
  service.setAutomaticallyChecksForUpdates(true);
  EXPECT_FALSE(service.automaticallyChecksForUpdates());
  EXPECT_EQ(changes.count(), 2);
  state.refuses = false;
  service.setAutomaticallyChecksForUpdates(true);
  EXPECT_TRUE(service.automaticallyChecksForUpdates());
}

TEST_F(UpdaterServiceTest, PassesOnThatAnUpdateWasFound) {
  const QSignalSpy found(&service, &UpdaterService::updateFound);
  Q_EMIT updater->updateFound("Version 2 is available.");
  ASSERT_EQ(found.count(), 1);
  EXPECT_EQ(found.at(0).at(0), "Version 2 is available.");
}

TEST_F(UpdaterServiceTest, ChecksOnceAtATimeAndOnlyWhereItCan) {
  service.checkForUpdates();
  EXPECT_EQ(state.checks, 1);
  state.checking = true;
  service.checkForUpdates();
  EXPECT_EQ(state.checks, 1);
  state = {.available = false, .checks = 1};
  service.checkForUpdates();
  service.setAutomaticallyChecksForUpdates(true);
  EXPECT_EQ(state.checks, 1);
  EXPECT_FALSE(state.automatic);
}

TEST(SharedUpdaterService, IsOneForTheWholeApplication) {
  const TemporaryDirectory home;
  qputenv("XDG_CONFIG_HOME", home.path().c_str());
  qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent");
  auto* first = &UpdaterService::shared();
  EXPECT_EQ(&UpdaterService::shared(), first);
  EXPECT_FALSE(first->isAvailable());
}

}  // namespace
}  // namespace velmora
