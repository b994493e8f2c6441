#include "VelmoraApp/RecentRequests/RecordListModel.h"

#include <algorithm>
#include <unordered_map>

#include "VelmoraApp/AppModel/BridgeTexts.h"
#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/RecentRequests/RequestTexts.h"
#include "VelmoraApp/RecentRequests/SessionTitles.h"

namespace velmora {

enum RecordListModel::Role : int {
  requestIdRole = Qt::UserRole,
  toolNameRole,
  statusRole,
  statusTextRole,
  meaningRole,
  targetRole,
  receivedRole,
  completedRole,
  commandRole,
  commandGapRole,
  outputRole,
  noteRole,
  errorRole,
  clientRole,
  durationRole,
};

namespace {

// Only what was delivered is ever kept.
bool isDeliveredCommand(const MCPRequestRecord& record) {
  return record.toolName == ToolName::sendCommand && record.status == RequestStatus::delivered;
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
    case statusTextRole:
      return statusText(record->status);
    case meaningRole:
      return QVariant::fromValue(statusMeaning(record->status));
    case targetRole:
      return record->sessionSnapshot ? sessionText(*record) : tr("No target");
    case receivedRole:
      return tr("Received %1").arg(timeText(record->receivedAt, now_()));
    case completedRole:
      return record->completedAt ? tr("Completed %1").arg(timeText(*record->completedAt, now_())) : QString();
    case commandRole:
      return optionalText(record->commandSummary);
    case commandGapRole:
      return isDeliveredCommand(*record) && !record->commandSummary
                 ? tr("The text of this command was not kept.")
                 : QString();
    case outputRole:
      return optionalText(record->outputPreview);
    case noteRole:
      return isDeliveredCommand(*record) ? tr("Delivered to Terminal; execution result is not tracked.")
                                         : QString();
    case errorRole:
      return record->error ? bridgeText(record->error->message) : QString();
    case clientRole:
      return clientText(record->client);
    case durationRole:
      return record->durationMilliseconds ? tr("%1 ms").arg(*record->durationMilliseconds) : QString();
    default:
      return {};
  }
}

QHash<int, QByteArray> RecordListModel::roleNames() const {
  return {{requestIdRole, "requestId"},   {toolNameRole, "toolName"},   {statusRole, "status"},
          {statusTextRole, "statusText"}, {meaningRole, "meaning"},     {targetRole, "target"},
          {receivedRole, "received"},     {completedRole, "completed"}, {commandRole, "command"},
          {commandGapRole, "commandGap"}, {outputRole, "output"},       {noteRole, "note"},
          {errorRole, "error"},           {clientRole, "client"},       {durationRole, "duration"}};
}

void RecordListModel::showRecords(std::vector<MCPRequestRecord> records) {
  std::vector<Item> items;
  items.reserve(records.size());
  std::unordered_map<Uuid, std::size_t> numbers;
  for (auto& record : records) {
    const auto id = record.requestId;
    items.push_back({{id, numbers[id]++}, std::move(record)});
  }
  std::reverse(items.begin(), items.end());
  show(std::move(items));
}

}  // namespace velmora
