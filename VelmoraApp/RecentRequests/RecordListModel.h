// Rows of the request history.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <functional>

#include "BridgeModels/MCPRequestRecord.h"
#include "VelmoraApp/AppModel/KeyedListModel.h"

namespace velmora {

/// Clients choose the ids of their requests, so two records may carry the same: `number` counts them.
struct RecordKey {
  Uuid requestId;
  std::size_t number;

  bool operator==(const RecordKey&) const = default;
};

}  // namespace velmora

template <>
struct std::hash<velmora::RecordKey> {
  std::size_t operator()(const velmora::RecordKey& key) const noexcept {
    return std::hash<velmora::Uuid>{}(key.requestId) + key.number;
  }
};

namespace velmora {

/// For the main thread. Roles that are texts, possibly empty: requestId, toolName, status, statusText,
/// target, received,
/// completed, command, commandGap (why there is none), output, note, error, client, duration. The role
/// `meaning` is the status's Meaning.
class RecordListModel : public KeyedListModel<MCPRequestRecord, RecordKey> {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by HistoryViewModel and RecentRequestsViewModel")

 public:
  explicit RecordListModel(Clock now) : now_(std::move(now)) {}

  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  /// `records` are oldest first, as the recorder has them; the rows are newest first.
  void showRecords(std::vector<MCPRequestRecord> records);

 private:
  enum Role : int;

  const Clock now_;
};

}  // namespace velmora
