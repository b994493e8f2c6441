#include "VelmoraApp/RecentRequests/RecordListModel.h"

#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/Style/Meaning.h"

namespace velmora {

namespace {

enum Role {
  requestIdRole = Qt::UserRole,
  toolNameRole,
  statusRole,
  meaningRole,
  targetRole,
  receivedRole,
  completedRole,
  commandRole,
  outputRole,
  noteRole,
  errorRole,
  clientRole,
  durationRole,
};

Meaning meaningOf(RequestStatus status) {
  switch (status) {
    case RequestStatus::delivered:
    case RequestStatus::readComplete:
      return Meaning::Positive;
    case RequestStatus::rejected:
    case RequestStatus::cancelled:
      return Meaning::Caution;
    case RequestStatus::failed:
      return Meaning::Danger;
    case RequestStatus::received:
    case RequestStatus::processing:
      break;
  }
  return Meaning::Quiet;
}

QString note(const MCPRequestRecord& record) {
  const bool isDeliveredCommand =
      record.toolName == ToolName::sendCommand && record.status == RequestStatus::delivered;
  return isDeliveredCommand ? "Delivered to Terminal; execution result is not tracked." : QString();
}

QString client(const ClientIdentitySummary& client) {
  return text(client.version ? client.name + " " + *client.version : client.name);
}

QString nameOf(const std::optional<std::string>& title, const std::optional<std::string>& tty) {
  if (!title || title->empty()) return optionalText(tty);
  return tty ? text(*title + " (" + *tty + ")") : text(*title);
}

}  // namespace

QVariant RecordListModel::data(const QModelIndex& index, int role) const {
  const auto* record = rowAt(index);
  if (record == nullptr) return {};
  switch (role) {
    case requestIdRole:
      return text(record->requestId.toString());
    case toolNameRole:
      return wireText(record->toolName);
    case statusRole:
      return wireText(record->status);
    case meaningRole:
      return QVariant::fromValue(meaningOf(record->status));
    case targetRole:
      return target(*record);
    case receivedRole:
      return "Received " + timeText(record->receivedAt, now_());
    case completedRole:
      return record->completedAt ? "Completed " + timeText(*record->completedAt, now_()) : QString();
    case commandRole:
      return optionalText(record->commandSummary);
    case outputRole:
      return optionalText(record->outputPreview);
    case noteRole:
      return note(*record);
    case errorRole:
      return record->error ? text(record->error->message) : QString();
    case clientRole:
      return client(record->client);
    case durationRole:
      return record->durationMilliseconds ? QString("%1 ms").arg(*record->durationMilliseconds) : QString();
    default:
      return {};
  }
}

QHash<int, QByteArray> RecordListModel::roleNames() const {
  return {{requestIdRole, "requestId"}, {toolNameRole, "toolName"}, {statusRole, "status"},
          {meaningRole, "meaning"},     {targetRole, "target"},     {receivedRole, "received"},
          {completedRole, "completed"}, {commandRole, "command"},   {outputRole, "output"},
          {noteRole, "note"},           {errorRole, "error"},       {clientRole, "client"},
          {durationRole, "duration"}};
}

void RecordListModel::showRecords(const std::vector<MCPRequestRecord>& records, std::size_t most) {
  const auto count = std::min(most, records.size());
  std::vector<Item> items;
  items.reserve(count);
  std::unordered_map<Uuid, std::size_t> numbers;
  for (auto record = records.end() - static_cast<std::ptrdiff_t>(count); record != records.end(); ++record) {
    items.push_back({{record->requestId, numbers[record->requestId]++}, *record});
  }
  std::reverse(items.begin(), items.end());
  show(std::move(items));
}

void RecordListModel::nameTargets(const std::vector<TerminalSession>& sessions) {
  std::unordered_map<Uuid, QString> names;
  for (const auto& session : sessions) names[session.sessionId] = nameOf(session.title, session.tty);
  if (names == names_) return;
  names_ = std::move(names);
  if (rowCount() > 0) Q_EMIT dataChanged(index(0), index(rowCount() - 1), {targetRole});
}

QString RecordListModel::target(const MCPRequestRecord& record) const {
  if (!record.sessionSnapshot) return "No target";
  const auto& session = *record.sessionSnapshot;
  auto recorded = nameOf(session.title, session.tty);
  if (!recorded.isEmpty()) return recorded;
  const auto known = names_.find(session.sessionId);
  return known == names_.end() ? text(session.sessionId.toString()) : known->second;
}

}  // namespace velmora
