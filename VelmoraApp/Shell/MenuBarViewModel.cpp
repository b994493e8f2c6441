#include "VelmoraApp/Shell/MenuBarViewModel.h"

#include "VelmoraApp/AppModel/BridgeTexts.h"
#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

MenuBarViewModel::MenuBarViewModel(AppModel& model, Desktop& desktop) : model_(model), desktop_(desktop) {
  connect(&model_, &AppModel::statusChanged, this, &MenuBarViewModel::changed);
  connect(&model_.serving(), &Serving::changed, this, &MenuBarViewModel::changed);
}

QString MenuBarViewModel::symbol() const { return paused() ? "pause.circle.fill" : "terminal"; }

QString MenuBarViewModel::stateText() const {
  if (servesElsewhere()) return tr("Another bridge is serving");
  return paused() ? tr("MCP Paused") : tr("MCP Active");
}

QString MenuBarViewModel::clientsText() const {
  return tr("Clients: %1").arg(model_.status().connectedClients.size());
}

QString MenuBarViewModel::sessionsText() const {
  return tr("Managed sessions: %1").arg(model_.status().controllableSessionCount);
}

QString MenuBarViewModel::errorText() const {
  const auto& error = model_.status().lastError;
  return error ? tr("Last error: %1").arg(bridgeText(error->message)) : QString();
}

QString MenuBarViewModel::pauseText() const { return paused() ? tr("Resume changes") : tr("Pause changes"); }

QString MenuBarViewModel::terminalName() const { return text(model_.automation().displayName()); }

std::vector<PermissionSettingsRow> MenuBarViewModel::permissions() const {
  return permissionSettings(desktop_.guideContext().terminal, model_.status()).rows;
}

void MenuBarViewModel::togglePause() { model_.setPaused(!paused()); }

}  // namespace velmora
