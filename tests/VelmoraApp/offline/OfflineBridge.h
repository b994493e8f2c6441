// The whole application below its window, over a terminal that is not there.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <memory>

#include "VelmoraApp/AppModel/Translation.h"
#include "VelmoraApp/Navigation/ViewModels.h"
#include "tests/VelmoraApp/FakeDesktop.h"
#include "tests/VelmoraApp/offline/Scenario.h"
#include "tests/support/FakeTerminal.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora::testing {

/// The real model and bridge in a home of their own, with a fake terminal and a clock that stands still. For
/// the main thread. Set `scenario` (see Scenario.h) once; `viewModels` is null before.
class OfflineBridge : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString scenario READ scenarioName WRITE setScenario NOTIFY scenarioChanged REQUIRED)
  Q_PROPERTY(bool ready READ ready NOTIFY readyChanged)
  Q_PROPERTY(velmora::ViewModels* viewModels READ viewModels NOTIFY scenarioChanged)

 public:
  explicit OfflineBridge(QObject* parent = nullptr) : QObject(parent) {}
  ~OfflineBridge() override;

  QString scenarioName() const { return scenarioName_; }
  void setScenario(const QString& name);
  bool ready() const {
    return ready_;
  }  ///< Whether the model shows what the first refresh found, and all else.
  ViewModels* viewModels() { return viewModels_.get(); }

  /// What the terminal was asked, in order: "focus(/dev/pts/1, 1)".
  Q_INVOKABLE QStringList terminalCalls() const;
  /// The id of the first session.
  Q_INVOKABLE QString firstSession();
  /// Leaves no record of anything.
  Q_INVOKABLE void forgetRequests();
  /// As an MCP client would; "" when it was delivered, else the error's code.
  Q_INVOKABLE QString sendCommand(const QString& sessionId, const QString& command);
  /// What the settings file holds, as its JSON text; empty without a file.
  Q_INVOKABLE QString settingsFile() const;
  /// From now on no settings can be saved.
  Q_INVOKABLE void failSaves() const;
  /// What stood in the socket's place is gone.
  Q_INVOKABLE void unblockSocket() const;
  /// From now on the system refuses, or allows again, to change the login item.
  Q_INVOKABLE void refuseLoginItem(bool refuses) { desktop_.refusesLoginItem = refuses; }
  /// The check for updates ends.
  Q_INVOKABLE void finishUpdateCheck(const QString& result) { updater_->finish(result); }
  /// What was copied last.
  Q_INVOKABLE QString pasteboard() const;
  /// What the application keeps of the user's choices, as text.
  Q_INVOKABLE QString userDefault(const QString& key) const;
  /// The policy of the stored settings.
  Q_INVOKABLE QString sessionPolicy();
  /// From now on the terminal refuses this operation of TerminalAutomating.
  Q_INVOKABLE void fail(const QString& operation);

 Q_SIGNALS:
  void scenarioChanged();
  void readyChanged();
  void languageChanged();

 private:
  void makeServices(const Scenario& scenario);
  void noticeReady();
  void speak();

  TemporaryDirectory home_;
  QString scenarioName_;
  bool ready_ = false;
  bool refreshed_ = false;
  FakeTerminal* terminal_ = nullptr;  // the model's
  FakeDesktop desktop_{QString::fromStdString((home_ / "defaults.ini").string())};
  std::unique_ptr<FirstRunController> firstRun_;
  std::unique_ptr<BridgeHost> otherBridge_;
  std::unique_ptr<AppModel> model_;
  std::unique_ptr<LanguagePreference> language_;
  std::unique_ptr<Translation> translation_;
  std::unique_ptr<MenuBarPreference> menuBar_;
  std::unique_ptr<LaunchAtLoginController> launchAtLogin_;
  FakeUpdater* updater_ = nullptr;  // the service's
  std::unique_ptr<UpdaterService> updaterService_;
  std::unique_ptr<ViewModels> viewModels_;
};

}  // namespace velmora::testing
