// Updates on Linux: the system's package manager finds and installs them. Velmora only asks.
#pragma once

#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <chrono>
#include <functional>

#include "System/Log.h"
#include "VelmoraApp/Platform/PackageKitTransaction.h"
#include "VelmoraApp/Platform/PlatformUpdater.h"
#include "VelmoraApp/Platform/UserDefaults.h"

namespace velmora {

struct PackageKitUpdaterOptions {
  QDBusConnection bus;
  QString program;         ///< The running program's file.
  UserDefaults& defaults;  ///< Where the choice is kept. Must outlive the updater.
  Clock now;
  Log log{};
  std::function<void(const QUrl&)> open;  ///< Shows an address with the desktop's own means.
  std::chrono::milliseconds patience = std::chrono::minutes(5);  ///< For one transaction, lists and all.
  std::chrono::milliseconds lookAgain = std::chrono::hours(1);  ///< To see whether an automatic check is due.
};

/// In the user defaults.
inline constexpr const char* automaticallyChecksForUpdatesKey = "automaticallyChecksForUpdates";

/// Available when PackageKit says that an installed package holds the running program: a program from a
/// build tree has no updates. Automatic checks run once a day while the application runs.
class PackageKitUpdater final : public PlatformUpdater {
  Q_OBJECT

 public:
  explicit PackageKitUpdater(PackageKitUpdaterOptions options);

  bool isAvailable() const override { return origin_ == Origin::package; }
  bool automaticallyChecksForUpdates() const override;
  void setAutomaticallyChecksForUpdates(bool automatically) override;
  void checkForUpdates() override { check(Asker::user); }
  bool isChecking() const override { return isChecking_; }
  std::optional<Date> lastUpdateCheckDate() const override { return lastRefresh_; }
  QString caption() const override;
  QString checkResult() const override;

 private:
  /// Where the running program comes from.
  enum class Origin { asking, package, noPackage, noService, noAnswer };
  enum class Asker { user, timer };
  /// What the last check came to. It becomes a sentence when it is shown, in the language of that moment.
  struct Result {
    enum class Kind { none, failed, upToDate, found };
    Kind kind = Kind::none;
    QString detail{};  ///< Why it failed, in English, or the version that was found.
  };

  void askOrigin();
  void takeOrigin(const PackageKitOutcome& outcome);
  void askLastRefresh();
  void checkWhenDue();
  void check(Asker asker);
  void takeUpdates(Asker asker, const PackageKitOutcome& outcome);
  void finishCheck(Result result);
  void run(PackageKitRequest request, PackageKitTransaction::Finish finish);

  PackageKitUpdaterOptions options_;
  Origin origin_ = Origin::asking;
  QString packageName_;
  bool isChecking_ = false;
  Result result_;
  QString toldVersion_;
  std::optional<Date> lastRefresh_;
  std::optional<Date> lastAutomaticCheck_;
  QTimer timer_;
};

}  // namespace velmora
