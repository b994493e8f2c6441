// One transaction of PackageKit, the service in front of the package managers of Linux systems.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <QtCore/QVariant>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusServiceWatcher>
#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace velmora {

/// PackageKit's names and numbers.
namespace packageKit {
inline constexpr const char* service = "org.freedesktop.PackageKit";
inline constexpr const char* path = "/org/freedesktop/PackageKit";
inline constexpr const char* interface = "org.freedesktop.PackageKit";
inline constexpr qulonglong filterNone = 1U << 1;
inline constexpr qulonglong filterInstalled = 1U << 2;
inline constexpr uint roleRefreshCache = 13;
}  // namespace packageKit

struct PackageKitRequest {
  QString method;
  QVariantList arguments{};
  bool interactive = false;  ///< Whether the system may ask the user for a password; else it refuses.
};

struct PackageKitOutcome {
  struct Package {
    QString name;
    QString version;
  };

  /// What went wrong, in PackageKit's or the bus's words; `packages` counts only without it.
  std::optional<QString> failure{};  ///< English, where it is ours: for `tr` when it is shown.
  bool hasNoService = false;         ///< The failure is that there is no PackageKit.
  std::vector<Package> packages{};
};

/// For the main thread, which it never blocks. Deletes itself after it has reported its outcome; deleted
/// earlier, it reports nothing and cancels the transaction.
///
/// PackageKit's own client library is not used: it ends no transaction whose object or bus vanished, makes
/// GLib end this process when the system bus goes, and needs Qt to run on GLib's main loop.
class PackageKitTransaction : public QObject {
  Q_OBJECT

 public:
  using Finish = std::function<void(const PackageKitOutcome&)>;

  /// Ends within `patience`, even if PackageKit dies or never answers.
  PackageKitTransaction(const QDBusConnection& bus, PackageKitRequest request,
                        std::chrono::milliseconds patience, Finish finish, QObject* parent);
  ~PackageKitTransaction() override;

 private:
  Q_SLOT void takePackage(const QDBusMessage& signal);
  Q_SLOT void takeError(const QDBusMessage& signal);
  Q_SLOT void takeEnd(const QDBusMessage& signal);
  Q_SLOT void takeDisappearance();

  void begin(const QDBusMessage& answer);
  void run(const QString& owner, const QString& path);
  void listen();
  void send(const QString& method, const QVariantList& arguments);
  void call(const QDBusMessage& message, const std::function<void(const QDBusMessage&)>& then);
  void fail(const QString& failure);
  void end();

  QDBusConnection bus_;
  const PackageKitRequest request_;
  Finish finish_;
  PackageKitOutcome outcome_;
  QString owner_;  // the service's own name on the bus
  QString path_;   // empty before PackageKit has made the transaction, and after its end
  QTimer deadline_;
  QDBusServiceWatcher ownerWatcher_;
};

}  // namespace velmora
