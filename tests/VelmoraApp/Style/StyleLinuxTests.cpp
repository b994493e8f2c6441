// Light and dark as a desktop portal tells them, on a bus of the test's own.
#include <gtest/gtest.h>

#include <QtCore/QProcess>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVariant>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include "VelmoraApp/Style/SystemAppearance.h"

namespace velmora {
namespace {

constexpr int kPatience = 20000;

QVariant wrapped(uint scheme) { return QVariant::fromValue(QDBusVariant(scheme)); }

class FakePortal : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

 public:
  explicit FakePortal(uint scheme) : scheme_(scheme) {}
  int questions() const { return questions_; }

 public Q_SLOTS:
  QDBusVariant Read(const QString& group,
                    const QString& key) {  // NOLINT(readability-identifier-naming): D-Bus
    ++questions_;
    const bool known = group == "org.freedesktop.appearance" && key == "color-scheme";
    return QDBusVariant(known ? wrapped(scheme_) : QVariant(0u));
  }

 private:
  const uint scheme_;
  int questions_ = 0;
};

class SystemAppearanceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    daemon_.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
    ASSERT_TRUE(daemon_.waitForReadyRead(kPatience));
    const auto address = daemon_.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    portalBus_ = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(QString(address), "portal"));
    ASSERT_TRUE(portalBus_->isConnected());
  }

  void TearDown() override {
    QDBusConnection::disconnectFromBus("portal");
    daemon_.kill();
    daemon_.waitForFinished();
  }

  void offer(FakePortal& portal) {
    ASSERT_TRUE(portalBus_->registerObject("/org/freedesktop/portal/desktop", &portal,
                                           QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(portalBus_->registerService("org.freedesktop.portal.Desktop"));
  }

  void announce(const QString& group, const QString& key, uint scheme) {
    auto signal = QDBusMessage::createSignal("/org/freedesktop/portal/desktop",
                                             "org.freedesktop.portal.Settings", "SettingChanged");
    signal << group << key << wrapped(scheme);
    ASSERT_TRUE(portalBus_->send(signal));
  }

  QProcess daemon_;
  std::unique_ptr<QDBusConnection> portalBus_;
};

TEST_F(SystemAppearanceTest, IsDarkWhenTheUserPrefersIt) {
  FakePortal portal(1);
  offer(portal);
  const SystemAppearance appearance;
  EXPECT_FALSE(appearance.dark());
  EXPECT_TRUE(QTest::qWaitFor([&] { return appearance.dark(); }, kPatience));
}

TEST_F(SystemAppearanceTest, StaysLightWithoutAPreference) {
  FakePortal portal(0);
  offer(portal);
  const SystemAppearance appearance;
  EXPECT_TRUE(QTest::qWaitFor([&] { return portal.questions() > 0; }, kPatience));
  EXPECT_FALSE(appearance.dark());
}

TEST_F(SystemAppearanceTest, FollowsAChangeAndIgnoresOtherSettings) {
  FakePortal portal(2);
  offer(portal);
  const SystemAppearance appearance;
  QSignalSpy changes(&appearance, &SystemAppearance::darkChanged);
  EXPECT_TRUE(QTest::qWaitFor([&] { return portal.questions() > 0; }, kPatience));
  announce("org.freedesktop.appearance", "accent-color", 1);
  announce("org.freedesktop.appearance", "color-scheme", 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return appearance.dark(); }, kPatience));
  announce("org.freedesktop.appearance", "color-scheme", 2);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !appearance.dark(); }, kPatience));
  EXPECT_EQ(changes.count(), 2);
}

TEST_F(SystemAppearanceTest, IsLightWithoutAPortal) {
  const SystemAppearance appearance;
  QTest::qWait(0);
  EXPECT_FALSE(appearance.dark());
}

}  // namespace
}  // namespace velmora

#include "StyleLinuxTests.moc"
