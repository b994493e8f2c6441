// Serves terminal_send_command: a command passes the delivery guard, then reaches the terminal.
#pragma once

#include "BridgeCore/DeliveryGuard.h"
#include "BridgeModels/ToolPayloads.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Thread-safe: the adapter delivers one after the other. The answer promises delivery, not completion.
class CommandService {
 public:
  CommandService(TerminalAutomating& automation, TerminalSessionService& sessions,
                 const SessionPermissionService& permissions, const BridgeOperationState& operationState,
                 PrivacySettingsStore& settingsStore, Clock now);

  CommandPayload send(const SendCommandInput& input);

 private:
  TerminalAutomating& automation_;
  const DeliveryGuard guard_;
  const Clock now_;
};

}  // namespace velmora
