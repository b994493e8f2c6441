#include <gmock/gmock.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTranslator>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include "VelmoraApp/Platform/PackageKitUpdater.h"
#include "tests/VelmoraApp/Platform/FakePackageKit.h"
#include "tests/support/FakeTime.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::FakePackageKit;

constexpr int kUpdatePatience = 20000;
constexpr double kHour = 3600;
const QString kProgram = "/usr/bin/velmora-app";
const QString kUpdate = "velmora;0.2.0-1;amd64;debian";

// A language in which every text begins with a mark.
class MarkedLanguage : public QTranslator {
 public:
  MarkedLanguage() { QCoreApplication::installTranslator(this); }
  QString translate(const char*, const char* source, const char*, int) const override {
    return "~" + QString::fromUtf8(source);
  }
  bool isEmpty() const override { return false; }
};

class PackageKitUpdaterTest : public ::testing::Test {
 protected:
  void offer() { packageKit.offer(bus.connection("service")); }
  void installPackage() {
    packageKit.scripts["SearchFiles"] = {.packages = {"velmora;0.1.0-1;amd64;installed"}, .info = 1};
  }

  PackageKitUpdater& make() {
    updater.reset();
    updater = std::make_unique<PackageKitUpdater>(
        PackageKitUpdaterOptions{.bus = bus.connection("client"),
                                 .program = kProgram,
                                 .defaults = *(defaults = std::make_unique<IniFileDefaults>(defaultsFile())),
                                 .now = time.clock(),
                                 .open = [this](const QUrl& address) { opened << address.toString(); },
                                 .patience = patience,
                                 .lookAgain = lookAgain});
    return *updater;
  }
  // An updater that knows where the program comes from.
  PackageKitUpdater& start() {
    make();
    waitFor([this] { return updater->caption() != "Asking the system's package manager."; });
    return *updater;
  }
  PackageKitUpdater& startInstalled() {
    installPackage();
    offer();
    start();
    EXPECT_TRUE(updater->isAvailable());
    return *updater;
  }
  void finishCheck() {
    waitFor([this] { return !updater->isChecking(); });
  }
  static void waitFor(const std::function<bool()>& condition) {
    ASSERT_TRUE(QTest::qWaitFor(condition, kUpdatePatience));
  }
  QString defaultsFile() const { return QString::fromStdString((home / "some.conf").string()); }
  qsizetype checks() const { return packageKit.calls.filter("RefreshCache").size(); }

  const TemporaryDirectory home;
  testing::PrivateBus bus;
  FakePackageKit packageKit;
  testing::FakeTime time{800000000};
  std::chrono::milliseconds patience = std::chrono::minutes(1);
  std::chrono::milliseconds lookAgain = std::chrono::hours(1);
  QStringList opened;
  std::unique_ptr<IniFileDefaults> defaults;
  std::unique_ptr<PackageKitUpdater> updater;
};

TEST_F(PackageKitUpdaterTest, IsAvailableWhenAPackageHoldsTheProgram) {
  startInstalled();
  EXPECT_TRUE(packageKit.calls.contains("SearchFiles 4 " + kProgram));
  EXPECT_EQ(updater->caption(),
            "Updates come from your system's package sources and are installed only after you approve them.");
  EXPECT_FALSE(updater->automaticallyChecksForUpdates());
  EXPECT_EQ(updater->checkResult(), "");
}

TEST_F(PackageKitUpdaterTest, IsNotAvailableForAProgramOfNoPackage) {
  offer();
  start();
  EXPECT_FALSE(updater->isAvailable());
  EXPECT_EQ(updater->caption(),
            "This copy of Velmora was not installed by the system's package manager, so it cannot look for "
            "updates.");
  updater->setAutomaticallyChecksForUpdates(true);
  EXPECT_FALSE(updater->automaticallyChecksForUpdates());
  updater->checkForUpdates();
  EXPECT_FALSE(updater->isChecking());
}

TEST_F(PackageKitUpdaterTest, IsNotAvailableWithoutPackageKit) {
  start();
  EXPECT_FALSE(updater->isAvailable());
  EXPECT_EQ(updater->caption(),
            "Velmora looks for updates through PackageKit, which this system does not have.");
}

TEST_F(PackageKitUpdaterTest, AsksAgainWhenPackageKitDidNotAnswer) {
  packageKit.createsTransactions = false;
  patience = lookAgain = std::chrono::milliseconds(200);
  installPackage();
  offer();
  make();
  waitFor([this] { return updater->caption().contains("does not answer"); });
  EXPECT_FALSE(updater->isAvailable());
  packageKit.createsTransactions = true;
  waitFor([this] { return updater->isAvailable(); });
}

TEST_F(PackageKitUpdaterTest, KnowsWhenTheListsWereRefreshed) {
  packageKit.secondsSinceRefresh = 90;
  startInstalled();
  waitFor([this] { return updater->lastUpdateCheckDate().has_value(); });
  EXPECT_EQ(updater->lastUpdateCheckDate(), Date{800000000 - 90});
}

TEST_F(PackageKitUpdaterTest, HasNoDateBeforeTheFirstRefresh) {
  startInstalled();
  waitFor([this] { return packageKit.calls.contains("GetTimeSinceAction 13"); });
  updater->checkForUpdates();  // its answers come after that one's
  finishCheck();
  EXPECT_EQ(updater->lastUpdateCheckDate(), std::nullopt);
}

TEST_F(PackageKitUpdaterTest, ACheckRefreshesThenFindsNothing) {
  packageKit.scripts["GetUpdates"].packages = {"tmux;3.4;amd64;debian", "velmora-doc;9;all;debian"};
  startInstalled();
  packageKit.calls.clear();
  packageKit.secondsSinceRefresh = 0;
  updater->checkForUpdates();
  EXPECT_TRUE(updater->isChecking());
  updater->checkForUpdates();  // one at a time
  finishCheck();
  EXPECT_EQ(updater->checkResult(), "Velmora is up to date.");
  EXPECT_EQ(opened, QStringList());
  waitFor([this] { return updater->lastUpdateCheckDate().has_value(); });
  EXPECT_EQ(packageKit.calls.filter(QRegularExpression("^(Refresh|GetUpdates|SetHints)")),
            QStringList({"SetHints interactive=true background=false", "RefreshCache false",
                         "SetHints interactive=true background=false", "GetUpdates 2"}));
}

TEST_F(PackageKitUpdaterTest, AnUpdateIsHandedToTheSoftwareCentre) {
  packageKit.scripts["GetUpdates"].packages = {kUpdate};
  startInstalled();
  updater->checkForUpdates();
  finishCheck();
  EXPECT_EQ(updater->checkResult(), "Version 0.2.0-1 is available. Install it with your system's updates.");
  EXPECT_EQ(opened, QStringList{"appstream:app.velmora.Velmora"});
}

TEST_F(PackageKitUpdaterTest, ARefusalOrAFailureEndsTheCheckAndIsSaid) {
  startInstalled();
  packageKit.scripts["RefreshCache"].refusal = "Not allowed.";
  updater->checkForUpdates();
  finishCheck();
  EXPECT_EQ(updater->checkResult(), "The check failed: Not allowed.");
  packageKit.scripts["RefreshCache"] = {};
  packageKit.scripts["GetUpdates"].error = "The lists are broken.";
  updater->checkForUpdates();
  finishCheck();
  EXPECT_EQ(updater->checkResult(), "The check failed: The lists are broken.");
  packageKit.scripts["GetUpdates"] = {};
  updater->checkForUpdates();
  finishCheck();
  EXPECT_EQ(updater->checkResult(), "Velmora is up to date.");
}

TEST_F(PackageKitUpdaterTest, TheResultIsSaidInTheLanguageOfNow) {
  startInstalled();
  updater->checkForUpdates();
  finishCheck();
  {
    const MarkedLanguage language;
    EXPECT_EQ(updater->checkResult(), "~Velmora is up to date.");
  }
  packageKit.scripts["GetUpdates"].packages = {kUpdate};
  updater->checkForUpdates();
  finishCheck();
  {
    const MarkedLanguage language;
    EXPECT_EQ(updater->checkResult(),
              "~Version 0.2.0-1 is available. Install it with your system's updates.");
  }
  EXPECT_EQ(updater->checkResult(), "Version 0.2.0-1 is available. Install it with your system's updates.");
}

TEST_F(PackageKitUpdaterTest, SurvivesAServiceThatDiesDuringTheCheck) {
  startInstalled();
  packageKit.scripts["RefreshCache"].answers = false;
  updater->checkForUpdates();
  waitFor([this] { return checks() == 1; });
  packageKit.die();
  finishCheck();
  EXPECT_TRUE(updater->checkResult().startsWith("The check failed: "));
  packageKit.scripts["RefreshCache"] = {};
  packageKit.offer(bus.connection("service again"));
  updater->checkForUpdates();
  finishCheck();
  EXPECT_EQ(updater->checkResult(), "Velmora is up to date.");
}

TEST_F(PackageKitUpdaterTest, SurvivesAServiceThatNeverAnswersTheCheck) {
  patience = std::chrono::milliseconds(500);
  startInstalled();
  packageKit.scripts["RefreshCache"].answers = false;
  updater->checkForUpdates();
  finishCheck();
  EXPECT_EQ(updater->checkResult(), "The check failed: The package manager did not answer.");
  const MarkedLanguage language;
  EXPECT_EQ(updater->checkResult(), "~The check failed: ~The package manager did not answer.");
}

TEST_F(PackageKitUpdaterTest, CanGoWhileACheckIsUnderWay) {
  startInstalled();
  packageKit.scripts["RefreshCache"].answers = false;
  updater->checkForUpdates();
  waitFor([this] { return checks() == 1; });
  updater.reset();
  waitFor([this] { return packageKit.calls.contains("Cancel"); });
}

TEST_F(PackageKitUpdaterTest, TheChoiceIsKept) {
  startInstalled();
  const QSignalSpy changes(updater.get(), &PlatformUpdater::changed);
  updater->setAutomaticallyChecksForUpdates(true);
  EXPECT_GE(changes.count(), 1);
  finishCheck();
  start();
  EXPECT_TRUE(updater->automaticallyChecksForUpdates());
  updater->setAutomaticallyChecksForUpdates(false);
  start();
  EXPECT_FALSE(updater->automaticallyChecksForUpdates());
}

TEST_F(PackageKitUpdaterTest, AnAutomaticCheckAsksNobodyAndOpensNothing) {
  packageKit.scripts["GetUpdates"].packages = {kUpdate};
  startInstalled();
  packageKit.calls.clear();
  updater->setAutomaticallyChecksForUpdates(true);
  EXPECT_TRUE(updater->isChecking());
  finishCheck();
  EXPECT_TRUE(packageKit.calls.contains("SetHints interactive=false background=true"));
  EXPECT_FALSE(packageKit.calls.contains("SetHints interactive=true background=false"));
  EXPECT_TRUE(updater->checkResult().startsWith("Version 0.2.0-1 is available."));
  EXPECT_EQ(opened, QStringList());
}

TEST_F(PackageKitUpdaterTest, AnAutomaticCheckTellsOnceOfEachVersion) {
  lookAgain = std::chrono::milliseconds(20);
  packageKit.scripts["GetUpdates"].packages = {kUpdate};
  startInstalled();
  QSignalSpy told(updater.get(), &PlatformUpdater::updateFound);
  updater->checkForUpdates();
  finishCheck();
  EXPECT_EQ(told.count(), 0);  // the user sees the answer
  updater->setAutomaticallyChecksForUpdates(true);
  waitFor([&] { return told.count() == 1; });
  EXPECT_TRUE(told.at(0).at(0).toString().startsWith("Version 0.2.0-1 is available."));
  const auto sofar = checks();
  time.advance(25 * kHour);
  waitFor([&] { return checks() > sofar && !updater->isChecking(); });
  EXPECT_EQ(told.count(), 1);
  packageKit.scripts["GetUpdates"].packages = {"velmora;0.3.0-1;amd64;debian"};
  time.advance(25 * kHour);
  waitFor([&] { return told.count() == 2; });
}

TEST_F(PackageKitUpdaterTest, AnAutomaticCheckComesOnceADayAlsoAcrossStarts) {
  startInstalled();
  updater->setAutomaticallyChecksForUpdates(true);
  finishCheck();
  EXPECT_EQ(checks(), 1);
  time.advance(23 * kHour);
  start();
  EXPECT_FALSE(updater->isChecking());
  time.advance(2 * kHour);
  start();
  EXPECT_TRUE(updater->isChecking());
  finishCheck();
  EXPECT_EQ(checks(), 2);
  time.advance(-240 * kHour);  // a clock that was wrong stops nothing
  start();
  EXPECT_TRUE(updater->isChecking());
}

TEST_F(PackageKitUpdaterTest, AnAutomaticCheckComesWhileTheApplicationRunsAndAgainAfterAFailure) {
  lookAgain = std::chrono::milliseconds(20);
  packageKit.scripts["RefreshCache"].error = "No network.";
  startInstalled();
  updater->setAutomaticallyChecksForUpdates(true);
  waitFor([this] { return checks() >= 2; });
  packageKit.scripts["RefreshCache"] = {};
  waitFor([this] { return updater->checkResult() == "Velmora is up to date."; });
  const auto sofar = checks();
  time.advance(25 * kHour);
  waitFor([&] { return checks() > sofar; });
}

}  // namespace
}  // namespace velmora
