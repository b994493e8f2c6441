#include "VelmoraApp/Sessions/SessionsViewModel.h"

#include <algorithm>
#include <iterator>

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

SessionsViewModel::SessionsViewModel(AppModel& model) : model_(model), sessions_(model.clock()) {
  connect(&model_, &AppModel::sessionsChanged, this, &SessionsViewModel::update);
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

QString SessionsViewModel::permissionsText() const {
  return "A permission guides an agent that uses Velmora as intended. It does not hold one that means to get around it.";
}

QString SessionsViewModel::emptyText() const {
  const auto hidden = model_.sessions().size();
  if (hidden == 1) return "1 session is hidden by the filters.";
  if (hidden > 1) return QString("%1 sessions are hidden by the filters.").arg(hidden);
  return QString("Open %1 or create a managed session from an MCP client.")
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
  problem_.clear();
  Q_EMIT problemChanged();
}

void SessionsViewModel::update() {
  std::vector<TerminalSession> listed;
  std::copy_if(model_.sessions().begin(), model_.sessions().end(), std::back_inserter(listed),
               [this](const TerminalSession& session) {
                 const bool isReadOnly = session.permission == SessionPermission::readOnly;
                 return (includeBusy_ || !session.busy) && (includeReadOnly_ || !isReadOnly);
               });
  sessions_.showSessions(listed);
  Q_EMIT countChanged();
}

void SessionsViewModel::fail(const QString& problem) {
  sessions_.repeatAll();  // the user's choice did not hold
  problem_ = problem;
  Q_EMIT problemChanged();
}

}  // namespace velmora
