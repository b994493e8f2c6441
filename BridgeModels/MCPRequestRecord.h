// One request in the history.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/ClientIdentity.h"
#include "BridgeModels/Date.h"
#include "BridgeModels/Records.h"
#include "BridgeModels/StructuredError.h"
#include "BridgeModels/ToolName.h"
#include "BridgeModels/Uuid.h"

namespace velmora {

struct MCPRequestRecord {
  Uuid requestId{};
  Date receivedAt{};
  std::optional<Date> completedAt{};
  ClientIdentitySummary client{};
  ToolName toolName = ToolName::status;
  std::optional<SessionReference> sessionSnapshot{};
  std::optional<std::string> commandBody{};  ///< Only when the settings allow it.
  std::optional<std::string> commandSummary{};
  RequestStatus status = RequestStatus::received;
  std::optional<std::int64_t> durationMilliseconds{};
  std::optional<std::int64_t> outputCharacterCount{};
  std::optional<bool> outputTruncated{};
  std::optional<std::string> outputPreview{};  ///< Only when the settings allow it.
  std::optional<StructuredError> error{};

  bool operator==(const MCPRequestRecord&) const = default;
};
BOOST_DESCRIBE_STRUCT(MCPRequestRecord, (),
                      (requestId, receivedAt, completedAt, client, toolName, sessionSnapshot, commandBody,
                       commandSummary, status, durationMilliseconds, outputCharacterCount, outputTruncated,
                       outputPreview, error))

}  // namespace velmora
