#include "VelmoraApp/Sessions/SessionListModel.h"

#include <QtCore/QStringList>

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

enum SessionListModel::Role : int {
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
  detailRole,
};

QString SessionListModel::permissionText(SessionPermission permission) {
  switch (permission) {
    case SessionPermission::managed:
      return tr("Agents read and type");
    case SessionPermission::allowed:
      return tr("Agents read and type, as you allowed");
    case SessionPermission::readOnly:
      return tr("Agents read only");
    case SessionPermission::blocked:
      break;
  }
  return tr("Agents neither read nor type");
}

QString SessionListModel::positionText(const TerminalSession& session) {
  return tr("Window %1, tab %2").arg(session.windowIndex).arg(session.tabIndex);
}

QString SessionListModel::detailText(const TerminalSession& session) const {
  QStringList parts{text(session.tty)};
  if (session.bridgeCreated) parts.append(tr("opened by an agent"));
  if (session.lastRequestAt) parts.append(tr("last used %1").arg(timeText(*session.lastRequestAt, now_())));
  parts.append(positionText(session));
  return parts.join("  ·  ");
}

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
      return positionText(*session);
    case lastRequestRole:
      return session->lastRequestAt ? timeText(*session->lastRequestAt, now_()) : QString();
    case detailRole:
      return detailText(*session);
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
          {lastRequestRole, "lastRequest"},
          {detailRole, "detail"}};
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

}  // namespace velmora
