// What the style takes from a Linux desktop. The portal knows whether the user prefers dark; Qt 6.4 does not
// ask it.

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusVariant>
#include <QtQuick/QQuickWindow>
#include <functional>
#include <utility>

#include "VelmoraApp/Style/StyleSetup.h"
#include "VelmoraApp/Style/SystemAppearance.h"

namespace velmora {

namespace {

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* interface = "org.freedesktop.portal.Settings";
constexpr const char* appearanceGroup = "org.freedesktop.appearance";
constexpr const char* schemeKey = "color-scheme";
constexpr uint prefersDark = 1;

/// A portal wraps its value in a variant, and the answer to a question in one more.
QVariant unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value;
}

class PortalListener : public QObject {
  Q_OBJECT

 public:
  PortalListener(QObject* parent, std::function<void(bool)> tell) : QObject(parent), tell_(std::move(tell)) {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    bus.connect(service, path, interface, "SettingChanged", this, SLOT(changed(QDBusMessage)));
    auto question = QDBusMessage::createMethodCall(service, path, interface, "Read");
    question << QString(appearanceGroup) << QString(schemeKey);
    // Never waited for: a portal that hangs must not hold the window back.
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
      const auto answer = watcher->reply();
      if (answer.type() == QDBusMessage::ReplyMessage) take(answer.arguments().value(0));
      watcher->deleteLater();
    });
  }

 private:
  Q_SLOT void changed(const QDBusMessage& message) {
    const auto arguments = message.arguments();
    if (arguments.value(0).toString() == appearanceGroup && arguments.value(1).toString() == schemeKey) {
      take(arguments.value(2));
    }
  }

  void take(const QVariant& value) { tell_(unwrapped(value).toUInt() == prefersDark); }

  std::function<void(bool)> tell_;
};

}  // namespace

void chooseRenderer() {
  // The screens are still and flat: drawing them in software takes 60 MB where OpenGL takes 150.
  if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND")) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  }
}

void SystemAppearance::follow() {
  new PortalListener(this, [this](bool dark) { setDark(dark); });
}

}  // namespace velmora

#include "StyleLinux.moc"
