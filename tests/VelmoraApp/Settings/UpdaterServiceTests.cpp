#include <gtest/gtest.h>

#include <QtTest/QSignalSpy>

#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/Settings/UpdaterService.h"
#include "tests/VelmoraApp/FakeDesktop.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

class UpdaterServiceTest : public ::testing::Test {
 protected:
  testing::FakeUpdater* updater = new testing::FakeUpdater;  // the service's
  UpdaterService service{std::unique_ptr<PlatformUpdater>(updater), [] { return Date{800000000}; }};
};

TEST_F(UpdaterServiceTest, ShowsWhatThePlatformSays) {
  updater->automatic = updater->checking = true;
  updater->lastCheck = Date{799999000};
  updater->result = "a result";
  EXPECT_TRUE(service.property("isAvailable").toBool());
  EXPECT_TRUE(service.property("automaticallyChecksForUpdates").toBool());
  EXPECT_TRUE(service.property("isChecking").toBool());
  EXPECT_EQ(service.property("caption"), updater->caption());
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
  updater->refuses = true;
  service.setAutomaticallyChecksForUpdates(true);
  EXPECT_FALSE(service.automaticallyChecksForUpdates());
  EXPECT_EQ(changes.count(), 2);
  updater->refuses = false;
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
  EXPECT_EQ(updater->checks, 1);
  updater->checking = true;
  service.checkForUpdates();
  EXPECT_EQ(updater->checks, 1);
  updater->available = updater->checking = false;
  service.checkForUpdates();
  service.setAutomaticallyChecksForUpdates(true);
  EXPECT_EQ(updater->checks, 1);
  EXPECT_FALSE(updater->automatic);
}

TEST(SharedUpdaterService, IsOneForTheWholeApplication) {
  const TemporaryDirectory home;
  testing::FakeDesktop desktop(QString::fromStdString((home / "defaults.ini").string()));
  auto* first = &UpdaterService::shared(desktop);
  EXPECT_EQ(&UpdaterService::shared(desktop), first);
}

}  // namespace
}  // namespace velmora
