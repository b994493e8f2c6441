#include "VelmoraApp/Sessions/SessionsViewModel.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <unordered_map>

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

SessionsViewModel::SessionsViewModel(AppModel& model) : model_(model), sessions_(model.clock()) {
  connect(&model_, &AppModel::sessionsChanged, this, &SessionsViewModel::update);
  connect(&model_, &AppModel::recordsChanged, this, &SessionsViewModel::update);
  connect(&model_, &AppModel::refreshingChanged, this, &SessionsViewModel::isLoadingChanged);
  connect(&model_, &AppModel::sessionActionFailed, this, &SessionsViewModel::fail);
  update();
}

void SessionsViewModel::setIncludeBusy(bool include) {
  includeBusy_ = include;
  Q_EMIT filterChanged();
  update();
}

void SessionsViewModel::setIncludeReadOnly(bool include) {
  includeReadOnly_ = include;
  Q_EMIT filterChanged();
  update();
}

QStringList SessionsViewModel::permissions() const { return wireTexts<SessionPermission>(); }

QStringList SessionsViewModel::permissionCaptions() const {
  QStringList captions;
  for (const auto& permission : enumCases<SessionPermission>)
    captions.append(SessionListModel::permissionText(permission.value));
  return captions;
}

QString SessionsViewModel::permissionsText() const {
  return tr(
      "A permission guides an agent that uses Velmora as intended. It does not hold one that means to get around it.");
}

QString SessionsViewModel::emptyText() const {
  const auto hidden = static_cast<int>(model_.sessions().size());
  if (hidden > 0) return tr("%n session(s) are hidden by the filters.", nullptr, hidden);
  return tr("Open %1 or create a managed session from an MCP client.")
      .arg(text(model_.automation().displayName()));
}

void SessionsViewModel::setPermission(const QString& sessionId, int row) {
  const auto id = Uuid::parse(sessionId.toStdString());
  const auto value = fromWireText<SessionPermission>(permissions().value(row));
  if (!id || !value) return;
  dismissProblem();
  model_.setPermission(*value, *id);
}

void SessionsViewModel::focus(const QString& sessionId) {
  const auto id = Uuid::parse(sessionId.toStdString());
  if (!id) return;
  dismissProblem();
  model_.focus(*id);
}

void SessionsViewModel::refresh() {
  dismissProblem();
  model_.refreshAll();
}

void SessionsViewModel::dismissProblem() {
  if (problem_.isEmpty()) return;
  problem_ = {};
  Q_EMIT problemChanged();
}

// When a session was last used changes between two refreshes; the registry knows.
void SessionsViewModel::update() {
  std::unordered_map<Uuid, std::optional<Date>> lastRequests;
  for (const auto& session : model_.coordinator().registry().currentSessions()) {
    lastRequests[session.sessionId] = session.lastRequestAt;
  }
  std::vector<TerminalSession> listed;
  std::copy_if(model_.sessions().begin(), model_.sessions().end(), std::back_inserter(listed),
               [this](const TerminalSession& session) {
                 const bool isReadOnly = session.permission == SessionPermission::readOnly;
                 return (includeBusy_ || !session.busy) && (includeReadOnly_ || !isReadOnly);
               });
  for (auto& session : listed) {
    const auto known = lastRequests.find(session.sessionId);
    if (known != lastRequests.end()) session.lastRequestAt = known->second;
  }
  sessions_.showSessions(listed);
  Q_EMIT countChanged();
}

void SessionsViewModel::fail(const Problem& problem) {
  sessions_.repeatAll();  // the user's choice did not hold
  problem_ = problem;
  Q_EMIT problemChanged();
}

}  // namespace velmora
