#include "VelmoraApp/Sessions/SessionListModel.h"

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

namespace {

enum Role {
  sessionIdRole = Qt::UserRole,
  titleRole,
  ttyRole,
  busyRole,
  permissionRole,
  permissionIndexRole,
  selectedRole,
  bridgeCreatedRole,
  positionRole,
  lastRequestRole,
};

}  // namespace

QVariant SessionListModel::data(const QModelIndex& index, int role) const {
  const auto* session = rowAt(index);
  if (session == nullptr) return {};
  switch (role) {
    case sessionIdRole:
      return text(session->sessionId.toString());
    case titleRole:
      return text(session->title);
    case ttyRole:
      return text(session->tty);
    case busyRole:
      return session->busy;
    case permissionRole:
      return wireText(session->permission);
    case permissionIndexRole:
      return static_cast<int>(session->permission);
    case selectedRole:
      return session->selected;
    case bridgeCreatedRole:
      return session->bridgeCreated;
    case positionRole:
      return QString("Window %1, tab %2").arg(session->windowIndex).arg(session->tabIndex);
    case lastRequestRole:
      return session->lastRequestAt ? timeText(*session->lastRequestAt, now_()) : QString();
    default:
      return {};
  }
}

QHash<int, QByteArray> SessionListModel::roleNames() const {
  return {{sessionIdRole, "sessionId"},
          {titleRole, "title"},
          {ttyRole, "tty"},
          {busyRole, "busy"},
          {permissionRole, "permission"},
          {permissionIndexRole, "permissionIndex"},
          {selectedRole, "selected"},
          {bridgeCreatedRole, "bridgeCreated"},
          {positionRole, "position"},
          {lastRequestRole, "lastRequest"}};
}

void SessionListModel::showSessions(const std::vector<TerminalSession>& sessions) {
  std::vector<Item> items;
  items.reserve(sessions.size());
  for (const auto& session : sessions) {
    items.push_back({session.sessionId, session});
    items.back().row.lastSeenAt = {};  // changes with every listing and is not shown
  }
  show(std::move(items));
}

void SessionListModel::repeatAll() {
  for (std::size_t index = 0; index < items().size(); ++index) repeat(index);
}

}  // namespace velmora
