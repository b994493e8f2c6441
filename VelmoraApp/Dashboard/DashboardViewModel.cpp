#include "VelmoraApp/Dashboard/DashboardViewModel.h"

#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/AppModel/TimeText.h"
#include "VelmoraApp/Dashboard/AutomationWarning.h"

namespace velmora {

DashboardViewModel::DashboardViewModel(AppModel& model) : model_(model) {
  connect(&model_, &AppModel::statusChanged, this, &DashboardViewModel::statusChanged);
  connect(&model_, &AppModel::recordsChanged, this, &DashboardViewModel::statusChanged);
  connect(&model_, &AppModel::problemsChanged, this, &DashboardViewModel::statusChanged);
  connect(&model_, &AppModel::refreshingChanged, this, &DashboardViewModel::isLoadingChanged);
}

QString DashboardViewModel::bridgeState() const { return paused() ? "Paused" : "Active"; }

QString DashboardViewModel::pauseButtonText() const {
  return paused() ? "Resume MCP changes" : "Pause MCP changes";
}

QString DashboardViewModel::terminalName() const { return text(model_.automation().displayName()); }

QString DashboardViewModel::terminalState() const { return wireText(status().terminalState); }

QString DashboardViewModel::automation() const { return wireText(status().automationPermission); }

int DashboardViewModel::windowCount() const { return static_cast<int>(status().windowCount); }

int DashboardViewModel::sessionCount() const { return static_cast<int>(status().sessionCount); }

QString DashboardViewModel::lastRequest() const {
  const auto& records = model_.records();
  return records.empty() ? QString() : timeText(records.back().receivedAt, model_.clock()());
}

QString DashboardViewModel::recentError() const {
  return status().lastError ? text(status().lastError->message) : QString();
}

QString DashboardViewModel::recentErrorSuggestion() const {
  return status().lastError ? text(status().lastError->recoverySuggestion) : QString();
}

QStringList DashboardViewModel::connectedClients() const {
  QStringList clients;
  for (const auto& client : status().connectedClients) {
    clients.append(text(client.version ? client.name + " " + *client.version : client.name));
  }
  return clients;
}

QStringList DashboardViewModel::warnings() const {
  auto warnings = model_.problems();
  const auto automation = automationWarning(status());
  if (!automation.isEmpty()) warnings.prepend(automation);
  return warnings;
}

void DashboardViewModel::togglePause() { model_.setPaused(!paused()); }

void DashboardViewModel::refresh() { model_.refreshAll(); }

}  // namespace velmora
