// What a desktop gives the application, in memory.
#pragma once

#include <QtCore/QCoreApplication>
#include <stdexcept>
#include <utility>
#include <vector>

#include "VelmoraApp/Platform/Desktop.h"

namespace velmora::testing {

class FakeUpdater final : public PlatformUpdater {
 public:
  bool available = true;
  bool automatic = false;
  bool refuses = false;  ///< The choice is not taken.
  bool checking = false;
  int checks = 0;
  std::optional<Date> lastCheck{};
  QString result;

  bool isAvailable() const override { return available; }
  bool automaticallyChecksForUpdates() const override { return automatic; }
  void setAutomaticallyChecksForUpdates(bool automatically) override {
    if (refuses) return;
    automatic = automatically;
    Q_EMIT changed();
  }
  void checkForUpdates() override {
    ++checks;
    checking = true;
    Q_EMIT changed();
  }
  bool isChecking() const override { return checking; }
  std::optional<Date> lastUpdateCheckDate() const override { return lastCheck; }
  QString caption() const override {
    return QCoreApplication::translate("velmora::PackageKitUpdater", "Asking the system's package manager.");
  }
  QString checkResult() const override { return result; }

  void finish(QString with) {
    checking = false;
    result = std::move(with);
    Q_EMIT changed();
  }
};

/// An icon in the tray, whose memory outlives it.
class FakeTrayIcon final : public TrayIcon {
 public:
  struct State {
    QMenu* menu = nullptr;      ///< Null while there is no icon.
    std::vector<bool> masks{};  ///< Of each icon that was set: whether only its shape counts.
    std::vector<QString> told{};
    std::function<void()> click{};
  };

  FakeTrayIcon(State& state, TrayIconUse use) : state_(state) {
    state_.menu = &use.menu;
    state_.click = std::move(use.openWindow);
  }
  ~FakeTrayIcon() override { state_.menu = nullptr; }

  void setIcon(const QIcon& icon) override { state_.masks.push_back(icon.isMask()); }
  void tell(const QString& sentence) override { state_.told.push_back(sentence); }

 private:
  State& state_;
};

class FakeDesktop final : public Desktop {
 public:
  /// User defaults are kept in `defaultsFile`.
  explicit FakeDesktop(const QString& defaultsFile) : defaults(defaultsFile) {}

  GuideContext context{.terminal = GuidedTerminal::tmux,
                       .preferredLanguages = {"en"},
                       .installPath = "/usr/bin/velmora-app",
                       .helperPath = "/usr/bin/velmora"};
  IniFileDefaults defaults;
  bool isLoginItem = false;
  bool refusesLoginItem = false;
  bool ignoresLoginItem = false;  ///< As while the user's approval is awaited.
  bool hasAboutPanel = false;
  bool isInDock = false;
  std::vector<SystemSettingsLink> openedPanes;
  FakeTrayIcon::State tray;

  void start() override {}
  std::unique_ptr<TrayIcon> makeTrayIcon(TrayIconUse use) override {
    return std::make_unique<FakeTrayIcon>(tray, std::move(use));
  }
  GuideContext guideContext() const override { return context; }
  UserDefaults& userDefaults() override { return defaults; }
  StartupPermissionPrompter permissionPrompter() const override { return {}; }
  bool startsAtLogin() const override { return isLoginItem; }
  void setStartsAtLogin(bool starts) override {
    if (refusesLoginItem) throw std::runtime_error("refused");
    if (!ignoresLoginItem) isLoginItem = starts;
  }
  std::unique_ptr<PlatformUpdater> makeUpdater() override { return std::make_unique<FakeUpdater>(); }
  bool updatesFromTheStart() override { return false; }
  bool hasDockIcon() const override { return isInDock; }
  bool showAboutPanel() override { return hasAboutPanel; }
  void openSettingsPane(SystemSettingsLink link) override { openedPanes.push_back(link); }
};

}  // namespace velmora::testing
