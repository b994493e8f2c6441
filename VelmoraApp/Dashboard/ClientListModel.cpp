#include "VelmoraApp/Dashboard/ClientListModel.h"

#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/RecentRequests/RequestTexts.h"

namespace velmora {

enum ClientListModel::Role : int { nameRole = Qt::UserRole, activityRole };

namespace {

constexpr int minutes = static_cast<int>(connectedForSeconds) / 60;

}  // namespace

QString ClientListModel::activityText(const ClientActivity& client) const {
  const auto count = client.calls;
  if (client.isCalling)
    return tr("%n request(s) in the last %1 minutes, one is under way", nullptr, count).arg(minutes);
  return tr("%n request(s) in the last %1 minutes, the last at %2", nullptr, count)
      .arg(QString::number(minutes), timeText(client.lastCallAt, now_()));
}

QVariant ClientListModel::data(const QModelIndex& index, int role) const {
  const auto* client = rowAt(index);
  if (client == nullptr) return {};
  switch (role) {
    case nameRole:
      return clientText(client->client);
    case activityRole:
      return activityText(*client);
    default:
      return {};
  }
}

QHash<int, QByteArray> ClientListModel::roleNames() const {
  return {{nameRole, "name"}, {activityRole, "activity"}};
}

void ClientListModel::showClients(const std::vector<ClientActivity>& clients) {
  std::vector<Item> items;
  for (const auto& each : clients) {
    // No name holds a line break's worth of version, so the two never run into each other.
    // With the length of the name, so that no two clients can be made to look like one.
    const auto& [name, version] = each.client;
    items.push_back(
        {std::to_string(name.size()) + (version ? "+" : "-") + name + version.value_or(""), each});
  }
  show(std::move(items));
}

}  // namespace velmora
