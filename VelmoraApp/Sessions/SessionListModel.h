// The rows of the session list.
#pragma once

#include <QtQml/qqmlregistration.h>

#include "BridgeModels/TerminalSession.h"
#include "VelmoraApp/AppModel/KeyedListModel.h"

namespace velmora {

/// For the main thread. Roles: sessionId, title, tty, busy, permission, permissionIndex, selected,
/// bridgeCreated, position ("Window 1, tab 2"), lastRequest (a time, or empty), detail (what to show of these
/// below the title).
class SessionListModel : public KeyedListModel<TerminalSession, Uuid> {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by SessionsViewModel")

 public:
  explicit SessionListModel(Clock now) : now_(std::move(now)) {}

  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  void showSessions(const std::vector<TerminalSession>& sessions);

  /// What the permission lets an agent do, in a few words.
  static QString permissionText(SessionPermission permission);

 private:
  enum Role : int;

  static QString positionText(const TerminalSession& session);
  QString detailText(const TerminalSession& session) const;

  const Clock now_;
};

}  // namespace velmora
