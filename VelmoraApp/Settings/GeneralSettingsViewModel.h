// Start-up, updates, and what the system has to allow.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QVariantList>
#include <functional>

#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/AppModel/LanguagePreference.h"
#include "VelmoraApp/AppModel/MenuBarPreference.h"
#include "VelmoraApp/Settings/LaunchAtLoginController.h"
#include "VelmoraApp/Settings/PermissionSettings.h"
#include "VelmoraApp/Settings/UpdaterService.h"

namespace velmora {

/// What the general page shows besides the model. All must outlive the view models.
struct GeneralSettingsSources {
  Desktop& desktop;
  MenuBarPreference& menuBar;
  LanguagePreference& language;
  LaunchAtLoginController& launchAtLogin;
  std::function<UpdaterService&()> updater;  ///< Made when it is first asked for.
};

/// For the main thread.
class GeneralSettingsViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by SettingsViewModel")
  Q_PROPERTY(velmora::LaunchAtLoginController* launchAtLogin READ launchAtLogin CONSTANT)
  Q_PROPERTY(velmora::UpdaterService* updater READ updater CONSTANT)
  Q_PROPERTY(QString menuBarText READ menuBarText NOTIFY menuBarChanged)
  Q_PROPERTY(bool menuBarEnabled READ menuBarEnabled WRITE setMenuBarEnabled NOTIFY menuBarChanged)
  Q_PROPERTY(bool menuBarHasPlace READ menuBarHasPlace NOTIFY menuBarChanged)
  Q_PROPERTY(bool usesTmux READ usesTmux CONSTANT)
  Q_PROPERTY(bool shellIntegration READ shellIntegration WRITE setShellIntegration NOTIFY settingsChanged)
  Q_PROPERTY(bool ownBusyInput READ ownBusyInput WRITE setOwnBusyInput NOTIFY settingsChanged)
  Q_PROPERTY(QString tmuxSocket READ tmuxSocket WRITE setTmuxSocket NOTIFY tmuxSocketChanged)
  Q_PROPERTY(QString settingsProblem READ settingsProblem NOTIFY settingsChanged)
  Q_PROPERTY(QStringList languageLabels READ languageLabels NOTIFY languageChanged)
  Q_PROPERTY(int languageIndex READ languageIndex WRITE setLanguageIndex NOTIFY languageChanged)
  Q_PROPERTY(QString permissionsCaption READ permissionsCaption NOTIFY permissionsChanged)
  Q_PROPERTY(QVariantList permissions READ permissions NOTIFY permissionsChanged)

 public:
  GeneralSettingsViewModel(AppModel& model, GeneralSettingsSources sources);

  LaunchAtLoginController* launchAtLogin() { return &sources_.launchAtLogin; }
  UpdaterService* updater() { return &sources_.updater(); }

  QString menuBarText() const;
  bool menuBarEnabled() const { return sources_.menuBar.menuBarEnabled(); }
  void setMenuBarEnabled(bool enabled) { sources_.menuBar.setMenuBarEnabled(enabled); }
  bool menuBarHasPlace() const { return sources_.menuBar.hasPlace(); }

  bool usesTmux() const { return terminal_ == GuidedTerminal::tmux; }
  bool shellIntegration() const;
  void setShellIntegration(bool automatic);
  bool ownBusyInput() const { return model_.settings().allowOwnBusySessionInput.value_or(false); }
  void setOwnBusyInput(bool allowed);
  /// The path of the socket of the tmux server that the next start will use; empty for the usual one.
  const QString& tmuxSocket() const { return tmuxSocket_; }
  /// Only an absolute path is saved; with another the problem says so.
  void setTmuxSocket(const QString& typed);
  /// Empty unless a change made on this page was not saved.
  QString settingsProblem() const { return settingsProblem_.text(); }
  QStringList languageLabels() const;  ///< The system's, then each language by its own name.
  int languageIndex() const;
  void setLanguageIndex(int index);  ///< Ignores what is no row of the labels.

  QString permissionsCaption() const { return permissions_.caption; }
  QVariantList permissions() const;  ///< PermissionSettingsRow each.
  Q_INVOKABLE void openPermission(int row);

  void retranslate() { updatePermissions(); }

 Q_SIGNALS:
  void menuBarChanged();
  void settingsChanged();
  void tmuxSocketChanged();  ///< Apart from the others: a path that is being typed is not to be lost.
  void languageChanged();
  void permissionsChanged();

 private:
  void updatePermissions();
  void updateTmuxSocket();

  AppModel& model_;
  GeneralSettingsSources sources_;
  const GuidedTerminal terminal_;
  QString tmuxSocket_;
  Problem settingsProblem_;
  PermissionSettings permissions_;
};

}  // namespace velmora
