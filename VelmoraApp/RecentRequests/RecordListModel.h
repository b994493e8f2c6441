// Rows of the request history.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <functional>
#include <unordered_map>

#include "BridgeModels/MCPRequestRecord.h"
#include "BridgeModels/TerminalSession.h"
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

/// For the main thread. Roles that are texts, possibly empty: requestId, toolName, status, target, received,
/// completed, command, output, note, error, client, duration. The role `meaning` is the status's Meaning.
class RecordListModel : public KeyedListModel<MCPRequestRecord, RecordKey> {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by HistoryViewModel and RecentRequestsViewModel")

 public:
  explicit RecordListModel(Clock now) : now_(std::move(now)) {}

  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  /// `records` are oldest first, as the recorder has them; the rows are newest first, and at most `most`.
  void showRecords(const std::vector<MCPRequestRecord>& records, std::size_t most);

  /// Records know only the ids of their targets; the titles come from these sessions.
  void nameTargets(const std::vector<TerminalSession>& sessions);

 private:
  QString target(const MCPRequestRecord& record) const;

  const Clock now_;
  std::unordered_map<Uuid, QString> names_;
};

}  // namespace velmora
