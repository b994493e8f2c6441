// Serves terminal_send_key: key presses pass the delivery guard, then reach the terminal.
#pragma once

#include "BridgeCore/DeliveryGuard.h"
#include "BridgeModels/ToolPayloads.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Thread-safe: the adapter delivers one after the other. The answer promises delivery, not completion.
class KeyService {
 public:
  KeyService(TerminalAutomating& automation, TerminalSessionService& sessions,
             const SessionPermissionService& permissions, const BridgeOperationState& operationState,
             PrivacySettingsStore& settingsStore, Clock now);

  KeyPayload send(const SendKeyInput& input);

 private:
  TerminalAutomating& automation_;
  const DeliveryGuard guard_;
  const Clock now_;
};

}  // namespace velmora
