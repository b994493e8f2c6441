#include "VelmoraApp/Dashboard/DashboardViewModel.h"

#include "VelmoraApp/AppModel/BridgeTexts.h"
#include "VelmoraApp/AppModel/ClientActivity.h"
#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

DashboardViewModel::DashboardViewModel(AppModel& model, const SessionTitles& names, GuidedTerminal terminal)
    : model_(model), terminal_(terminal), clients_(model.clock()), now_(model, names) {
  connect(&model_, &AppModel::statusChanged, this, &DashboardViewModel::update);
  connect(&model_, &AppModel::recordsChanged, this, &DashboardViewModel::update);
  connect(&model_, &AppModel::problemsChanged, this, &DashboardViewModel::statusChanged);
  connect(&model_.serving(), &Serving::changed, this, &DashboardViewModel::servingChanged);
  connect(&model_.serving(), &Serving::changed, this, &DashboardViewModel::statusChanged);
  connect(&model_, &AppModel::refreshingChanged, this, &DashboardViewModel::isLoadingChanged);
  update();
}

// With tmux no settings pane grants this permission; the adapter's error says what is wrong.
QString DashboardViewModel::automationWarning() const {
  if (terminal_ == GuidedTerminal::terminalApp) {
    return tr(
        "Terminal automation permission is required. Open System Settings > Privacy & Security > Automation and allow Velmora.");
  }
  const auto warning = tr("Terminal automation permission is required.");
  return status().lastError ? warning + " " + problemText(*status().lastError) : warning;
}

void DashboardViewModel::update() {
  clients_.showClients(clientActivity(model_.records(), model_.clock()()));
  Q_EMIT statusChanged();
}

QString DashboardViewModel::bridgeState() const { return paused() ? tr("Paused") : tr("Active"); }

QString DashboardViewModel::bridgeCaption() const {
  if (!servingProblem().isEmpty()) return tr("No agent can reach it.");
  return paused() ? tr("Agents may read, but change nothing.") : tr("Agents may use your sessions.");
}

QString DashboardViewModel::pauseButtonText() const {
  return paused() ? tr("Resume MCP changes") : tr("Pause MCP changes");
}

QString DashboardViewModel::terminalName() const { return text(model_.automation().displayName()); }

QString DashboardViewModel::terminalState() const { return wireText(status().terminalState); }

QString DashboardViewModel::terminalCaption() const {
  switch (status().terminalState) {
    case TerminalState::available:
      return tr("%1 is running.").arg(terminalName());
    case TerminalState::noWindows:
      return tr("%1 is running, without a window.").arg(terminalName());
    case TerminalState::notRunning:
      return tr("%1 is not running.").arg(terminalName());
    case TerminalState::unavailable:
      break;
  }
  return tr("%1 does not answer.").arg(terminalName());
}

Meaning DashboardViewModel::terminalMeaning() const {
  return status().terminalState == TerminalState::available ? Meaning::Positive : Meaning::Caution;
}

QString DashboardViewModel::automation() const { return wireText(status().automationPermission); }

QString DashboardViewModel::automationCaption() const {
  switch (status().automationPermission) {
    case AutomationPermission::granted:
      return tr("Velmora may use %1.").arg(terminalName());
    case AutomationPermission::denied:
      return tr("Velmora may not use %1.").arg(terminalName());
    case AutomationPermission::unknown:
      break;
  }
  return tr("Not known yet.");
}

Meaning DashboardViewModel::automationMeaning() const {
  return status().automationPermission == AutomationPermission::denied ? Meaning::Danger : Meaning::Plain;
}

int DashboardViewModel::windowCount() const { return static_cast<int>(status().windowCount); }

int DashboardViewModel::sessionCount() const { return static_cast<int>(status().sessionCount); }

QString DashboardViewModel::sessionsCaption() const {
  const auto controllable = status().controllableSessionCount;
  if (sessionCount() == 0) return tr("None was found.");
  if (controllable == 0) return tr("Agents may type into none.");
  if (controllable == status().sessionCount) return tr("Agents may type into all of them.");
  return tr("Agents may type into %1 of them.").arg(controllable);
}

QString DashboardViewModel::lastRequest() const {
  const auto& records = model_.records();
  return records.empty() ? QString() : timeText(records.back().receivedAt, model_.clock()());
}

QString DashboardViewModel::recentError() const {
  return status().lastError ? bridgeText(status().lastError->message) : QString();
}

QString DashboardViewModel::recentErrorSuggestion() const {
  return status().lastError ? bridgeText(status().lastError->recoverySuggestion) : QString();
}

QStringList DashboardViewModel::warnings() const {
  auto warnings = model_.problems();
  if (status().automationPermission == AutomationPermission::denied) {
    warnings.prepend(automationWarning());
  }
  return warnings;
}

void DashboardViewModel::togglePause() { model_.setPaused(!paused()); }

void DashboardViewModel::refresh() { model_.refreshAll(); }

}  // namespace velmora
