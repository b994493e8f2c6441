// Which records of the history are shown and which are kept.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "BridgeModels/Date.h"
#include "BridgeModels/MCPRequestRecord.h"
#include "BridgeModels/PrivacyRetentionSettings.h"

namespace velmora {

/// What the user wants to see. Empty members do not restrict.
struct HistoryFilter {
  std::string query{};  ///< Sought in all that is shown of a record, never in command bodies and previews.
  std::optional<ToolName> tool{};
  std::optional<Uuid> sessionId{};
  std::optional<std::string> clientName{};  ///< Part of the client's name, whatever its case.
  std::set<RequestStatus> statuses{};
  std::optional<ErrorCode> errorCode{};

  bool operator==(const HistoryFilter&) const = default;
};

/// Pure functions over lists of records.
class HistoryQueryService {
 public:
  static bool matches(const MCPRequestRecord& record, const HistoryFilter& filter);

  /// The records that match, in their given order.
  static std::vector<MCPRequestRecord> filter(const std::vector<MCPRequestRecord>& records,
                                              const HistoryFilter& filter);

  /// The records to keep, newest first: those of the last `retentionDays` calendar days, and of them the
  /// newest `maximumRecordCount`. Records of the same time keep their given order.
  static std::vector<MCPRequestRecord> retain(const std::vector<MCPRequestRecord>& records,
                                              const PrivacyRetentionSettings& settings, Date now);

  /// The records other than those of the request.
  static std::vector<MCPRequestRecord> delete_(const Uuid& requestId, std::vector<MCPRequestRecord> records);
};

}  // namespace velmora
