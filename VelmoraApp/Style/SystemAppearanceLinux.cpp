// The desktop portal knows whether the person prefers dark; Qt 6.4 does not ask it.

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusVariant>
#include <functional>
#include <utility>

#include "VelmoraApp/Style/SystemAppearance.h"

namespace velmora {
namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kNamespace = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");
constexpr uint kPreferDark = 1;

/// A portal wraps its value in a variant, and the answer to a question in one more.
QVariant unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>()) {
    value = value.value<QDBusVariant>().variant();
  }
  return value;
}

class PortalListener : public QObject {
  Q_OBJECT

 public:
  PortalListener(QObject* parent, std::function<void(bool)> tell) : QObject(parent), tell_(std::move(tell)) {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
      return;
    }
    bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                SLOT(changed(QDBusMessage)));
    auto question = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    question << kNamespace << kKey;
    // Never waited for: a portal that hangs must not hold the window back.
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
      const auto answer = watcher->reply();
      if (answer.type() == QDBusMessage::ReplyMessage) {
        take(answer.arguments().value(0));
      }
      watcher->deleteLater();
    });
  }

 private:
  Q_SLOT void changed(const QDBusMessage& message) {
    const auto arguments = message.arguments();
    if (arguments.value(0) == kNamespace && arguments.value(1) == kKey) {
      take(arguments.value(2));
    }
  }

  void take(const QVariant& value) { tell_(unwrapped(value).toUInt() == kPreferDark); }

  std::function<void(bool)> tell_;
};

}  // namespace

void SystemAppearance::follow() {
  new PortalListener(this, [this](bool dark) { setDark(dark); });
}

}  // namespace velmora

#include "SystemAppearanceLinux.moc"
