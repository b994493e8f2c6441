#include "VelmoraApp/Dashboard/DashboardViewModel.h"

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

namespace {

// With tmux no settings pane grants this permission; the adapter's error says what is wrong.
QString automationWarning(GuidedTerminal terminal, const BridgeStatus& status) {
  if (terminal == GuidedTerminal::terminalApp) {
    return "Terminal automation permission is required. Open System Settings > Privacy & Security > Automation and allow Velmora.";
  }
  QString warning = "Terminal automation permission is required.";
  if (!status.lastError) return warning;
  return warning + " " + text(status.lastError->message + " " + status.lastError->recoverySuggestion);
}

}  // namespace

DashboardViewModel::DashboardViewModel(AppModel& model, GuidedTerminal terminal)
    : model_(model), terminal_(terminal) {
  connect(&model_, &AppModel::statusChanged, this, &DashboardViewModel::statusChanged);
  connect(&model_, &AppModel::recordsChanged, this, &DashboardViewModel::statusChanged);
  connect(&model_, &AppModel::problemsChanged, this, &DashboardViewModel::statusChanged);
  connect(&model_.serving(), &Serving::changed, this, &DashboardViewModel::servingChanged);
  connect(&model_.serving(), &Serving::changed, this, &DashboardViewModel::statusChanged);
  connect(&model_, &AppModel::refreshingChanged, this, &DashboardViewModel::isLoadingChanged);
}

QString DashboardViewModel::bridgeState() const { return paused() ? "Paused" : "Active"; }

QString DashboardViewModel::pauseButtonText() const {
  return paused() ? "Resume MCP changes" : "Pause MCP changes";
}

QString DashboardViewModel::terminalName() const { return text(model_.automation().displayName()); }

QString DashboardViewModel::terminalState() const { return wireText(status().terminalState); }

Meaning DashboardViewModel::terminalMeaning() const {
  return status().terminalState == TerminalState::available ? Meaning::Positive : Meaning::Caution;
}

QString DashboardViewModel::automation() const { return wireText(status().automationPermission); }

Meaning DashboardViewModel::automationMeaning() const {
  return status().automationPermission == AutomationPermission::denied ? Meaning::Danger : Meaning::Plain;
}

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
  if (status().automationPermission == AutomationPermission::denied) {
    warnings.prepend(automationWarning(terminal_, status()));
  }
  return warnings;
}

void DashboardViewModel::togglePause() { model_.setPaused(!paused()); }

void DashboardViewModel::refresh() { model_.refreshAll(); }

}  // namespace velmora
