// Start-up, updates, and what the system has to allow.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QVariantList>
#include <functional>

#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/AppModel/MenuBarPreference.h"
#include "VelmoraApp/Settings/LaunchAtLoginController.h"
#include "VelmoraApp/Settings/PermissionSettings.h"
#include "VelmoraApp/Settings/UpdaterService.h"

namespace velmora {

/// What the general page shows besides the model. All must outlive the view models.
struct GeneralSettingsSources {
  Desktop& desktop;
  MenuBarPreference& menuBar;
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
  Q_PROPERTY(QString menuBarText READ menuBarText CONSTANT)
  Q_PROPERTY(bool menuBarEnabled READ menuBarEnabled WRITE setMenuBarEnabled NOTIFY menuBarChanged)
  Q_PROPERTY(bool menuBarHasPlace READ menuBarHasPlace NOTIFY menuBarChanged)
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

  QString permissionsCaption() const { return permissions_.caption; }
  QVariantList permissions() const;  ///< PermissionSettingsRow each.
  Q_INVOKABLE void openPermission(int row);

 Q_SIGNALS:
  void menuBarChanged();
  void permissionsChanged();

 private:
  AppModel& model_;
  GeneralSettingsSources sources_;
  const GuidedTerminal terminal_;
  PermissionSettings permissions_;
};

}  // namespace velmora
