// What the menu-bar extra says.
#pragma once

#include <QtCore/QObject>

#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/Settings/PermissionSettings.h"

namespace velmora {

/// For the main thread.
class MenuBarViewModel : public QObject {
  Q_OBJECT

 public:
  /// Both must outlive it.
  MenuBarViewModel(AppModel& model, Desktop& desktop);

  QString symbol() const;  ///< The name of the icon.
  QString stateText() const;
  QString clientsText() const;
  QString sessionsText() const;
  QString errorText() const;  ///< Empty when there is no error.
  QString pauseText() const;
  /// Whether the bridge is this application's to pause: not during the introduction, and not while another
  /// one serves.
  bool canPause() const { return model_.isStarted(); }
  bool servesElsewhere() const { return model_.serving().otherBridge().has_value(); }
  QString terminalName() const;
  std::vector<PermissionSettingsRow> permissions() const;

  void togglePause();
  void openPane(SystemSettingsLink link) { desktop_.openSettingsPane(link); }

 Q_SIGNALS:
  void changed();

 private:
  bool paused() const { return model_.status().mcpState == MCPState::paused; }

  AppModel& model_;
  Desktop& desktop_;
};

}  // namespace velmora
