#include "VelmoraApp/Platform/PackageKitTransaction.h"

#include <QtDBus/QDBusObjectPath>
#include <QtDBus/QDBusPendingCallWatcher>
#include <utility>

namespace velmora {

namespace {

constexpr const char* transactionInterface = "org.freedesktop.PackageKit.Transaction";
constexpr uint exitSuccess = 1;
constexpr uint infoBlocked = 9;

}  // namespace

PackageKitTransaction::PackageKitTransaction(const QDBusConnection& bus, PackageKitRequest request,
                                             std::chrono::milliseconds patience, Finish finish,
                                             QObject* parent)
    : QObject(parent), bus_(bus), request_(std::move(request)), finish_(std::move(finish)) {
  ownerWatcher_.setConnection(bus_);
  ownerWatcher_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
  connect(&ownerWatcher_, &QDBusServiceWatcher::serviceUnregistered, this,
          &PackageKitTransaction::takeDisappearance);
  deadline_.setSingleShot(true);
  connect(&deadline_, &QTimer::timeout, this,
          [this] { fail(outcome_.failure.value_or(QT_TR_NOOP("The package manager did not answer."))); });
  if (!bus_.isConnected()) {  // a call on it would never end
    outcome_ = {.failure = QT_TR_NOOP("There is no system bus."), .hasNoService = true};
    deadline_.start(std::chrono::milliseconds(0));
    return;
  }
  deadline_.start(patience);
  call(QDBusMessage::createMethodCall(packageKit::service, packageKit::path, packageKit::interface,
                                      "CreateTransaction"),
       [this](const QDBusMessage& answer) { begin(answer); });
}

PackageKitTransaction::~PackageKitTransaction() {
  if (!path_.isEmpty()) send("Cancel", {});
}

void PackageKitTransaction::begin(const QDBusMessage& answer) {
  const auto path = answer.arguments().value(0).value<QDBusObjectPath>().path();
  if (path.isEmpty()) {
    fail(QT_TR_NOOP("The package manager gave no transaction."));
    return;
  }
  // Qt 6.4 says whose answer this is, Qt 6.8 does not.
  auto question = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                 "org.freedesktop.DBus", "GetNameOwner");
  question.setArguments({packageKit::service});
  call(question,
       [this, path](const QDBusMessage& owner) { run(owner.arguments().value(0).toString(), path); });
}

void PackageKitTransaction::run(const QString& owner, const QString& path) {
  owner_ = owner;
  path_ = path;
  ownerWatcher_.addWatchedService(owner_);
  listen();
  const QString interactive = request_.interactive ? "true" : "false";
  const QString background = request_.interactive ? "false" : "true";
  send("SetHints", {QStringList{"interactive=" + interactive, "background=" + background}});
  auto message = QDBusMessage::createMethodCall(owner_, path_, transactionInterface, request_.method);
  message.setArguments(request_.arguments);
  call(message, [](const QDBusMessage&) {});
}

// By the owner's unique name: resolving the well-known one would block.
void PackageKitTransaction::listen() {
  bus_.connect(owner_, path_, transactionInterface, "Package", this, SLOT(takePackage(QDBusMessage)));
  bus_.connect(owner_, path_, transactionInterface, "ErrorCode", this, SLOT(takeError(QDBusMessage)));
  bus_.connect(owner_, path_, transactionInterface, "Finished", this, SLOT(takeEnd(QDBusMessage)));
  bus_.connect(owner_, path_, transactionInterface, "Destroy", this, SLOT(takeDisappearance()));
  // If the bus itself ends, nobody is left to say that the service has gone.
  bus_.connect({}, "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected", this,
               SLOT(takeDisappearance()));
}

void PackageKitTransaction::send(const QString& method, const QVariantList& arguments) {
  auto message = QDBusMessage::createMethodCall(owner_, path_, transactionInterface, method);
  message.setArguments(arguments);
  bus_.asyncCall(message);
}

// The bus's own time-out is too short for a user who has to type a password; the deadline decides.
void PackageKitTransaction::call(const QDBusMessage& message,
                                 const std::function<void(const QDBusMessage&)>& then) {
  auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message, 2 * deadline_.interval()), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, then] {
    watcher->deleteLater();
    if (!finish_) return;
    const auto answer = watcher->reply();
    if (answer.type() == QDBusMessage::ReplyMessage) {
      then(answer);
      return;
    }
    outcome_.hasNoService = watcher->error().type() == QDBusError::ServiceUnknown ||
                            watcher->error().type() == QDBusError::Disconnected;
    path_.clear();
    fail(answer.errorMessage());
  });
}

// "name;version;architecture;origin". A blocked update cannot be installed.
void PackageKitTransaction::takePackage(const QDBusMessage& signal) {
  if (signal.arguments().value(0).toUInt() == infoBlocked) return;
  const auto parts = signal.arguments().value(1).toString().split(';');
  outcome_.packages.push_back({parts.value(0), parts.value(1)});
}

void PackageKitTransaction::takeError(const QDBusMessage& signal) {
  outcome_.failure = signal.arguments().value(1).toString();
}

void PackageKitTransaction::takeEnd(const QDBusMessage& signal) {
  path_.clear();
  if (signal.arguments().value(0).toUInt() == exitSuccess) {
    outcome_.failure.reset();
    end();
  } else {
    fail(outcome_.failure.value_or(QT_TR_NOOP("The package manager did not finish.")));
  }
}

void PackageKitTransaction::takeDisappearance() {
  path_.clear();
  fail(QT_TR_NOOP("The package manager ended before it answered."));
}

void PackageKitTransaction::fail(const QString& failure) {
  outcome_.failure = failure;
  end();
}

void PackageKitTransaction::end() {
  if (!finish_) return;
  const auto finish = std::exchange(finish_, nullptr);
  deadline_.stop();
  deleteLater();
  finish(outcome_);
}

}  // namespace velmora
