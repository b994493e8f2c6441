// The rows of the connected clients.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <string>

#include "VelmoraApp/AppModel/ClientActivity.h"
#include "VelmoraApp/AppModel/KeyedListModel.h"

namespace velmora {

/// For the main thread. Roles: name ("Coding agent 2.1.0"), activity ("5 requests in the last 10 minutes, the
/// last at 14:05:24").
class ClientListModel : public KeyedListModel<ClientActivity, std::string> {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by DashboardViewModel")

 public:
  explicit ClientListModel(Clock now) : now_(std::move(now)) {}

  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  void showClients(const std::vector<ClientActivity>& clients);

 private:
  enum Role : int;

  QString activityText(const ClientActivity& client) const;

  const Clock now_;
};

}  // namespace velmora
