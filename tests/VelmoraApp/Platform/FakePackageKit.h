// PackageKit as a test wants it, on a bus of the test's own.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusContext>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusObjectPath>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmora::testing {

/// How a method of a transaction answers.
struct TransactionScript {
  QStringList packages{};            ///< Their ids.
  uint info = 5;                     ///< What each package is; 5 is a normal update.
  std::optional<QString> error{};    ///< The transaction fails with these details.
  std::optional<QString> refusal{};  ///< The call itself is refused, as PolicyKit does it.
  bool answers = true;               ///< Otherwise the call is taken and nothing follows.
  bool isDestroyedUnfinished = false;
};

// NOLINTBEGIN(readability-identifier-naming): the names are D-Bus's
class FakeTransaction : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.PackageKit.Transaction")

 public:
  FakeTransaction(QDBusConnection bus, QString path, std::map<QString, TransactionScript>& scripts,
                  QStringList& calls)
      : bus_(std::move(bus)), path_(std::move(path)), scripts_(scripts), calls_(calls) {}

 public Q_SLOTS:
  void SetHints(const QStringList& hints) { calls_ << "SetHints " + hints.join(' '); }
  void SearchFiles(qulonglong filter, const QStringList& values) {
    run("SearchFiles", QString::number(filter) + ' ' + values.join(' '));
  }
  void RefreshCache(bool force) { run("RefreshCache", force ? "true" : "false"); }
  void GetUpdates(qulonglong filter) { run("GetUpdates", QString::number(filter)); }
  void Cancel() { calls_ << "Cancel"; }

 private:
  void run(const QString& method, const QString& arguments) {
    calls_ << method + ' ' + arguments;
    const auto script = scripts_[method];
    if (script.refusal) {
      sendErrorReply("org.freedesktop.PackageKit.Transaction.RefusedByPolicy", *script.refusal);
      return;
    }
    if (!script.answers) return;
    for (const auto& package : script.packages) tell("Package", {script.info, package, "A summary"});
    if (script.isDestroyedUnfinished) {
      tell("Destroy", {});
      return;
    }
    if (script.error) tell("ErrorCode", {2U, *script.error});
    tell("Finished", {script.error ? 2U : 1U, 7U});
    tell("Destroy", {});
  }
  void tell(const QString& name, const QVariantList& arguments) {
    auto signal = QDBusMessage::createSignal(path_, "org.freedesktop.PackageKit.Transaction", name);
    signal.setArguments(arguments);
    bus_.send(signal);
  }

  QDBusConnection bus_;
  const QString path_;
  std::map<QString, TransactionScript>& scripts_;
  QStringList& calls_;
};

class FakePackageKit : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.PackageKit")

 public:
  /// Answers for each method of a transaction, and what was called of all of them in order.
  std::map<QString, TransactionScript> scripts;
  QStringList calls;
  bool createsTransactions = true;  ///< Otherwise the call for one is never answered.
  uint secondsSinceRefresh = 0xFFFFFFFF;

  void offer(QDBusConnection bus) {
    bus_.emplace(std::move(bus));
    bus_->registerObject("/org/freedesktop/PackageKit", this, QDBusConnection::ExportAllSlots);
    bus_->registerService("org.freedesktop.PackageKit");
  }

  /// Leaves the bus, as a service that crashed.
  void die() {
    const auto name = bus_->name();
    transactions_.clear();
    bus_.reset();
    QDBusConnection::disconnectFromBus(name);
  }

 public Q_SLOTS:
  QDBusObjectPath CreateTransaction() {
    if (!createsTransactions) {
      setDelayedReply(true);
      return {};
    }
    const auto path = "/" + QString::number(transactions_.size() + 1) + "_abcd";
    transactions_.push_back(std::make_unique<FakeTransaction>(*bus_, path, scripts, calls));
    bus_->registerObject(path, transactions_.back().get(), QDBusConnection::ExportAllSlots);
    return QDBusObjectPath(path);
  }
  uint GetTimeSinceAction(uint role) {
    calls << "GetTimeSinceAction " + QString::number(role);
    return secondsSinceRefresh;
  }

 private:
  std::optional<QDBusConnection> bus_;
  std::vector<std::unique_ptr<FakeTransaction>> transactions_;
};
// NOLINTEND(readability-identifier-naming)

/// A bus of its own, with nobody on it.
class PrivateBus {
 public:
  PrivateBus() {
    daemon_.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
    if (daemon_.waitForReadyRead(20000)) address_ = daemon_.readLine().trimmed();
  }
  ~PrivateBus() {
    for (const auto& name : names_) QDBusConnection::disconnectFromBus(name);
    stop();
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  QDBusConnection connection(const QString& name) {
    names_ << name;
    return QDBusConnection::connectToBus(address_, name);
  }
  void stop() {
    daemon_.kill();
    daemon_.waitForFinished();
  }

 private:
  QProcess daemon_;
  QString address_;
  QStringList names_;
};

}  // namespace velmora::testing
