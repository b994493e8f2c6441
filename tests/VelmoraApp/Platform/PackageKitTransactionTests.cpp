#include <gmock/gmock.h>

#include <QtCore/QCoreApplication>
#include <QtTest/QTest>

#include "VelmoraApp/Platform/PackageKitTransaction.h"
#include "tests/VelmoraApp/Platform/FakePackageKit.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using testing::FakePackageKit;
using ::testing::Optional;

constexpr int kPatience = 20000;
const PackageKitRequest kGetUpdates{.method = "GetUpdates", .arguments = {qulonglong{2}}};

class PackageKitTransactionTest : public ::testing::Test {
 protected:
  void offer() { packageKit.offer(bus.connection("service")); }

  void start(const PackageKitRequest& request = kGetUpdates,
             std::chrono::milliseconds patience = std::chrono::minutes(1)) {
    new PackageKitTransaction(
        client, request, patience, [this](const auto& outcome) { outcomes.push_back(outcome); }, &parent);
  }
  const PackageKitOutcome& outcome() {
    EXPECT_TRUE(QTest::qWaitFor([this] { return !outcomes.empty(); }, kPatience));
    static const PackageKitOutcome none;
    return outcomes.empty() ? none : outcomes.front();
  }
  bool waitForCall(const QString& call) {
    return QTest::qWaitFor([&] { return packageKit.calls.contains(call); }, kPatience);
  }
  // The call itself has its reply then; what is missing is the signal of its end.
  void takeReplies() {
    client.call(QDBusMessage::createMethodCall("org.freedesktop.PackageKit", "/org/freedesktop/PackageKit",
                                               "org.freedesktop.DBus.Peer", "Ping"),
                QDBus::BlockWithGui);
    QCoreApplication::processEvents();
  }
  // No transaction outlives its end.
  bool isGone() {
    return QTest::qWaitFor([this] { return parent.children().isEmpty(); }, kPatience);
  }

  testing::PrivateBus bus;
  QDBusConnection client = bus.connection("client");
  FakePackageKit packageKit;
  QObject parent;
  std::vector<PackageKitOutcome> outcomes;
};

TEST_F(PackageKitTransactionTest, HandsOverThePackages) {
  packageKit.scripts["GetUpdates"].packages = {"velmora;0.2.0-1;amd64;debian", "tmux;3.4;amd64;debian"};
  offer();
  start();
  EXPECT_EQ(outcome().failure, std::nullopt);
  ASSERT_EQ(outcome().packages.size(), 2u);
  EXPECT_EQ(outcome().packages[0].name, "velmora");
  EXPECT_EQ(outcome().packages[0].version, "0.2.0-1");
  EXPECT_EQ(outcome().packages[1].name, "tmux");
  EXPECT_TRUE(isGone());
  EXPECT_EQ(outcomes.size(), 1u);
  EXPECT_EQ(packageKit.calls, QStringList({"SetHints interactive=false background=true", "GetUpdates 2"}));
}

TEST_F(PackageKitTransactionTest, LeavesOutAnUpdateThatIsBlocked) {
  packageKit.scripts["GetUpdates"] = {.packages = {"velmora;0.2.0-1;amd64;debian"}, .info = 9};
  offer();
  start();
  EXPECT_EQ(outcome().failure, std::nullopt);
  EXPECT_TRUE(outcome().packages.empty());
}

TEST_F(PackageKitTransactionTest, LetsTheSystemAskOnlyWhenAPersonWaits) {
  offer();
  start({.method = "RefreshCache", .arguments = {false}, .interactive = true});
  EXPECT_EQ(outcome().failure, std::nullopt);
  EXPECT_EQ(packageKit.calls,
            QStringList({"SetHints interactive=true background=false", "RefreshCache false"}));
}

TEST_F(PackageKitTransactionTest, FailsWithWhatPackageKitSays) {
  packageKit.scripts["GetUpdates"].error = "No network.";
  offer();
  start();
  EXPECT_THAT(outcome().failure, Optional(QString("No network.")));
  EXPECT_FALSE(outcome().hasNoService);
}

TEST_F(PackageKitTransactionTest, FailsWhenThePolicyRefuses) {
  packageKit.scripts["GetUpdates"].refusal = "Not allowed.";
  offer();
  start();
  EXPECT_THAT(outcome().failure, Optional(QString("Not allowed.")));
  EXPECT_FALSE(outcome().hasNoService);
  EXPECT_TRUE(isGone());
}

TEST_F(PackageKitTransactionTest, SaysWhenThereIsNoService) {
  start();
  EXPECT_TRUE(outcome().failure);
  EXPECT_TRUE(outcome().hasNoService);
}

TEST_F(PackageKitTransactionTest, SaysWhenThereIsNoBus) {
  client = QDBusConnection("never connected");
  start();
  EXPECT_TRUE(outcome().hasNoService);
}

TEST_F(PackageKitTransactionTest, EndsWhenTheServiceNeverMakesATransaction) {
  packageKit.createsTransactions = false;
  offer();
  start(kGetUpdates, std::chrono::milliseconds(100));
  EXPECT_TRUE(outcome().failure);
  EXPECT_FALSE(outcome().hasNoService);
  EXPECT_TRUE(isGone());
}

TEST_F(PackageKitTransactionTest, EndsWhenTheServiceNeverAnswersAndHasItStop) {
  packageKit.scripts["GetUpdates"].answers = false;
  offer();
  start(kGetUpdates, std::chrono::milliseconds(300));
  EXPECT_THAT(outcome().failure, Optional(QString("The package manager did not answer.")));
  EXPECT_TRUE(waitForCall("Cancel"));
  EXPECT_EQ(outcomes.size(), 1u);
}

TEST_F(PackageKitTransactionTest, EndsWhenTheServiceDies) {
  packageKit.scripts["GetUpdates"].answers = false;
  offer();
  start();
  ASSERT_TRUE(waitForCall("GetUpdates 2"));
  packageKit.die();
  EXPECT_TRUE(outcome().failure);
  EXPECT_TRUE(isGone());
}

TEST_F(PackageKitTransactionTest, EndsWhenTheTransactionVanishes) {
  packageKit.scripts["GetUpdates"].isDestroyedUnfinished = true;
  offer();
  start();
  EXPECT_THAT(outcome().failure, Optional(QString("The package manager ended before it answered.")));
}

TEST_F(PackageKitTransactionTest, EndsWhenTheBusDies) {
  packageKit.scripts["GetUpdates"].answers = false;
  offer();
  start();
  ASSERT_TRUE(waitForCall("GetUpdates 2"));
  takeReplies();
  bus.stop();
  EXPECT_TRUE(outcome().failure);
  EXPECT_TRUE(isGone());
}

TEST_F(PackageKitTransactionTest, DestroyedEarlyHandsOverNothingAndHasItStop) {
  packageKit.scripts["GetUpdates"].answers = false;
  offer();
  start();
  ASSERT_TRUE(waitForCall("GetUpdates 2"));
  delete parent.children().front();
  EXPECT_TRUE(waitForCall("Cancel"));
  EXPECT_TRUE(outcomes.empty());
}

}  // namespace
}  // namespace velmora
