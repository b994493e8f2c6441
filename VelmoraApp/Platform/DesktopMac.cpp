#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QTimer>
#include <QtWidgets/QMenu>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "MacPlatform/Application.h"
#include "MacPlatform/Permissions.h"
#include "MacPlatform/StatusItem.h"
#include "MacPlatform/Updater.h"
#include "MacPlatform/UserDefaults.h"
#include "TerminalAutomation/AppleScript/AppleScriptExecutor.h"
#include "VelmoraApp/Platform/AboutMenu.h"
#include "VelmoraApp/Platform/Desktop.h"

namespace velmora {

namespace {

// The updater does not say when it has checked, whether by itself or in its own windows.
constexpr std::chrono::seconds lookAgain{5};

QString translated(const char* text) { return QCoreApplication::translate("DesktopMac", text); }

// The user defaults of the bundle identifier.
class StandardDefaults final : public UserDefaults {
 public:
  void set(const QString& key, bool value) override { mac::setBoolDefault(key.toStdString(), value); }
  void set(const QString& key, const QString& value) override {
    mac::setTextDefault(key.toStdString(), value.toStdString());
  }

 private:
  std::optional<bool> storedBoolean(const QString& key) const override {
    return mac::boolDefault(key.toStdString());
  }
  std::optional<QString> storedText(const QString& key) const override {
    const auto found = mac::textDefault(key.toStdString());
    return found ? std::optional(QString::fromStdString(*found)) : std::nullopt;
  }
};

class FrameworkUpdater final : public PlatformUpdater {
 public:
  FrameworkUpdater() {
    connect(&timer_, &QTimer::timeout, this, [this] {
      const auto date = lastUpdateCheckDate();
      if (std::exchange(shownDate_, date) != date) Q_EMIT changed();
    });
    if (isAvailable()) timer_.start(lookAgain);
  }

  bool isAvailable() const override { return updater_ != nullptr; }
  bool automaticallyChecksForUpdates() const override {
    return isAvailable() && updater_->automaticallyChecksForUpdates();
  }
  void setAutomaticallyChecksForUpdates(bool automatically) override {
    if (isAvailable()) updater_->setAutomaticallyChecksForUpdates(automatically);
    Q_EMIT changed();
  }
  void checkForUpdates() override {
    if (isAvailable()) updater_->checkForUpdates();
  }
  bool isChecking() const override { return false; }  // its own windows say so
  std::optional<Date> lastUpdateCheckDate() const override {
    return isAvailable() ? updater_->lastUpdateCheckDate() : std::nullopt;
  }
  QString caption() const override {
    return isAvailable()
               ? translated(QT_TRANSLATE_NOOP(
                     "DesktopMac",
                     "Updates are downloaded from the maker's update source and installed only after you approve them."))
               : translated(QT_TRANSLATE_NOOP("DesktopMac", "This build of Velmora has no updater."));
  }
  QString checkResult() const override { return {}; }

 private:
  const std::unique_ptr<mac::Updater> updater_ = mac::makeUpdater();
  std::optional<Date> shownDate_ = lastUpdateCheckDate();
  QTimer timer_;
};

// A status item of our own, because Qt's opens the window with each click, and ends the application on some
// systems.
class MacTrayIcon final : public TrayIcon {
 public:
  explicit MacTrayIcon(QMenu& menu) : item_(mac::makeStatusItem("Velmora", menu.toNSMenu())) {}

  void setIcon(const QIcon& icon) override {
    QByteArray png;
    QBuffer buffer(&png);
    icon.pixmap(QSize(mac::statusImageSize, mac::statusImageSize), 2.0).toImage().save(&buffer, "PNG");
    item_->setImage(png.toStdString());
  }
  void tell(const QString&) override {}  // the updater has windows of its own

 private:
  const std::unique_ptr<mac::StatusItem> item_;
};

// The stand-by adapter has nothing to ask for.
template <auto request>
void ask(TerminalAutomating& terminal) {
  if (auto* adapter = dynamic_cast<AppleScriptExecutor*>(&terminal)) (adapter->*request)().get();
}

class MacDesktop final : public Desktop {
 public:
  using Desktop::Desktop;

  void start() override {
    setHasTrayPlace(true);
    mac::stayAwake("MCP clients wait for answers");
    auto* menu = new AboutMenu(&mac::showAboutPanel);
    connect(this, &QObject::destroyed, menu, &QObject::deleteLater);
  }

  std::unique_ptr<TrayIcon> makeTrayIcon(TrayIconUse use) override {
    return std::make_unique<MacTrayIcon>(use.menu);
  }

  GuideContext guideContext() const override {
    QStringList languages;
    for (const auto& language : mac::preferredLanguages()) languages.append(QString::fromStdString(language));
    const auto helper = (mac::applicationBundlePath() / "Contents" / "Helpers" / "velmora").string();
    return {.terminal = GuidedTerminal::terminalApp,
            .preferredLanguages = languages,
            .installPath = "/Applications/Velmora.app",
            .helperPath = helper,
            .helperIsThere = QFileInfo(QString::fromStdString(helper)).isExecutable()};
  }

  UserDefaults& userDefaults() override { return defaults_; }

  StartupPermissionPrompter permissionPrompter() const override {
    return {.requestAccessibility = mac::requestAccessibility,
            .requestScreenCapture = mac::requestScreenCapture,
            .requestTerminalAutomation = ask<&AppleScriptExecutor::requestAccess>,
            .requestSystemEventsAutomation = ask<&AppleScriptExecutor::requestSystemEventsAccess>};
  }

  // The system knows the application by its bundle identifier and follows it when it moves.
  bool startsAtLogin() const override { return mac::isLoginItemEnabled(); }
  void setStartsAtLogin(bool starts) override {
    if (!mac::setLoginItemEnabled(starts)) throw std::runtime_error("the login item was refused");
  }

  std::unique_ptr<PlatformUpdater> makeUpdater() override { return std::make_unique<FrameworkUpdater>(); }
  // It keeps the user's choice itself, and acts on it from its creation on.
  bool updatesFromTheStart() override { return true; }

  bool hasDockIcon() const override { return true; }
  bool showAboutPanel() override {
    mac::showAboutPanel();
    return true;
  }
  void openSettingsPane(SystemSettingsLink link) override { mac::openURL(urlOf(link)); }

 private:
  StandardDefaults defaults_;
};

}  // namespace

std::unique_ptr<Desktop> makeDesktop(const Environment&, const Log& log) {
  return std::make_unique<MacDesktop>(log);
}

}  // namespace velmora
