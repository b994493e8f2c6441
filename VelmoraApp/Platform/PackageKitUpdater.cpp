#include "VelmoraApp/Platform/PackageKitUpdater.h"

#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <algorithm>
#include <utility>

namespace velmora {

namespace {

constexpr const char* lastAutomaticCheckKey = "lastAutomaticUpdateCheck";
constexpr double secondsOfDay = 86400;

// PackageKit's answer when it was never done.
constexpr uint never = 0xFFFFFFFF;

// A software centre shows the application's page, with the button that installs the update. The session's own
// interface of PackageKit offers to install what is not there yet and refuses what is.
const QUrl softwareCentrePage("appstream:app.velmora.Velmora");  // after "//" QUrl would make it lower case

}  // namespace

PackageKitUpdater::PackageKitUpdater(PackageKitUpdaterOptions options)
    : options_(std::move(options)),
      lastAutomaticCheck_(Date::parseIso8601(options_.defaults.text(lastAutomaticCheckKey).toStdString())) {
  connect(&timer_, &QTimer::timeout, this, &PackageKitUpdater::checkWhenDue);
  timer_.start(options_.lookAgain);
  askOrigin();
}

bool PackageKitUpdater::automaticallyChecksForUpdates() const {
  return isAvailable() && options_.defaults.boolean(automaticallyChecksForUpdatesKey, /*absent=*/false);
}

void PackageKitUpdater::setAutomaticallyChecksForUpdates(bool automatically) {
  if (!isAvailable()) return;
  options_.defaults.set(automaticallyChecksForUpdatesKey, automatically);
  Q_EMIT changed();
  checkWhenDue();
}

QString PackageKitUpdater::caption() const {
  switch (origin_) {
    case Origin::asking:
      return tr("Asking the system's package manager.");
    case Origin::package:
      return tr(
          "Updates come from your system's package sources and are installed only after you approve them.");
    case Origin::noPackage:
      return tr(
          "This copy of Velmora was not installed by the system's package manager, so it cannot look for updates.");
    case Origin::noService:
      return tr("Velmora looks for updates through PackageKit, which this system does not have.");
    case Origin::noAnswer:
      return tr("The system's package manager does not answer, so Velmora cannot look for updates.");
  }
  return {};
}

QString PackageKitUpdater::checkResult() const {
  switch (result_.kind) {
    case Result::Kind::none:
      break;
    case Result::Kind::failed:
      return tr("The check failed: %1").arg(PackageKitTransaction::tr(result_.detail.toUtf8().constData()));
    case Result::Kind::upToDate:
      return tr("Velmora is up to date.");
    case Result::Kind::found:
      return tr("Version %1 is available. Install it with your system's updates.").arg(result_.detail);
  }
  return {};
}

void PackageKitUpdater::askOrigin() {
  run({.method = "SearchFiles",
       .arguments = {QVariant::fromValue(packageKit::filterInstalled), QStringList{options_.program}}},
      [this](const PackageKitOutcome& outcome) { takeOrigin(outcome); });
}

void PackageKitUpdater::takeOrigin(const PackageKitOutcome& outcome) {
  if (outcome.hasNoService) {
    origin_ = Origin::noService;
  } else if (outcome.failure) {
    options_.log.debug("updates", outcome.failure->toStdString());
    origin_ = Origin::noAnswer;
  } else if (outcome.packages.empty()) {
    origin_ = Origin::noPackage;
  } else {
    origin_ = Origin::package;
    packageName_ = outcome.packages.front().name;
    askLastRefresh();
  }
  Q_EMIT changed();
  if (isAvailable()) checkWhenDue();
}

void PackageKitUpdater::askLastRefresh() {
  auto question = QDBusMessage::createMethodCall(packageKit::service, packageKit::path, packageKit::interface,
                                                 "GetTimeSinceAction");
  question << packageKit::roleRefreshCache;
  auto* watcher = new QDBusPendingCallWatcher(options_.bus.asyncCall(question), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    watcher->deleteLater();
    const QDBusPendingReply<uint> seconds = *watcher;
    if (!seconds.isValid() || seconds.value() == never) return;
    lastRefresh_ = Date{options_.now().secondsSinceReferenceDate - seconds.value()};
    Q_EMIT changed();
  });
}

void PackageKitUpdater::checkWhenDue() {
  if (origin_ == Origin::noAnswer) {
    origin_ = Origin::asking;
    askOrigin();  // it may have been busy
    return;
  }
  if (!automaticallyChecksForUpdates() || isChecking_) return;
  const auto now = options_.now();
  if (lastAutomaticCheck_ && now >= *lastAutomaticCheck_ &&
      now.secondsSinceReferenceDate - lastAutomaticCheck_->secondsSinceReferenceDate < secondsOfDay) {
    return;
  }
  check(Asker::timer);
}

void PackageKitUpdater::check(Asker asker) {
  if (!isAvailable() || isChecking_) return;
  isChecking_ = true;
  result_ = {};
  Q_EMIT changed();
  const bool interactive = asker == Asker::user;
  run({.method = "RefreshCache", .arguments = {false}, .interactive = interactive},
      [this, asker, interactive](const PackageKitOutcome& refreshed) {
        if (refreshed.failure) {
          finishCheck({Result::Kind::failed, *refreshed.failure});
          return;
        }
        run({.method = "GetUpdates",
             .arguments = {QVariant::fromValue(packageKit::filterNone)},
             .interactive = interactive},
            [this, asker](const PackageKitOutcome& updates) { takeUpdates(asker, updates); });
      });
}

void PackageKitUpdater::takeUpdates(Asker asker, const PackageKitOutcome& outcome) {
  if (outcome.failure) {
    finishCheck({Result::Kind::failed, *outcome.failure});
    return;
  }
  if (asker == Asker::timer) {
    lastAutomaticCheck_ = options_.now();
    options_.defaults.set(lastAutomaticCheckKey, QString::fromStdString(lastAutomaticCheck_->toIso8601()));
  }
  const auto found = std::find_if(outcome.packages.begin(), outcome.packages.end(),
                                  [this](const auto& package) { return package.name == packageName_; });
  if (found == outcome.packages.end()) {
    finishCheck({Result::Kind::upToDate});
    return;
  }
  finishCheck({Result::Kind::found, found->version});
  if (asker == Asker::user) {
    options_.open(softwareCentrePage);
  } else if (std::exchange(toldVersion_, found->version) != found->version) {
    Q_EMIT updateFound(checkResult());
  }
}

void PackageKitUpdater::finishCheck(Result result) {
  isChecking_ = false;
  result_ = std::move(result);
  askLastRefresh();
  Q_EMIT changed();
}

void PackageKitUpdater::run(PackageKitRequest request, PackageKitTransaction::Finish finish) {
  new PackageKitTransaction(options_.bus, std::move(request), options_.patience, std::move(finish), this);
}

}  // namespace velmora
