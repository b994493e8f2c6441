// The answer of terminal_status and the dashboard's model.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/ClientIdentity.h"
#include "BridgeModels/Date.h"
#include "BridgeModels/Records.h"
#include "BridgeModels/StructuredError.h"
#include "BridgeModels/Uuid.h"

namespace velmora {

struct BridgeStatus {
  MCPState mcpState = MCPState::active;
  TerminalState terminalState = TerminalState::notRunning;
  AutomationPermission automationPermission = AutomationPermission::unknown;
  std::vector<ClientIdentity> connectedClients{};
  std::int64_t windowCount = 0;               ///< Terminal windows open.
  std::int64_t sessionCount = 0;              ///< Sessions known to the registry.
  std::int64_t controllableSessionCount = 0;  ///< Sessions that a client may drive.
  std::optional<Uuid> lastRequestId{};
  std::optional<StructuredError> lastError{};
  Date updatedAt{};

  bool operator==(const BridgeStatus&) const = default;
};
BOOST_DESCRIBE_STRUCT(BridgeStatus, (),
                      (mcpState, terminalState, automationPermission, connectedClients, windowCount,
                       sessionCount, controllableSessionCount, lastRequestId, lastError, updatedAt))

}  // namespace velmora
