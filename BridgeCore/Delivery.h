// The two services that type into a tab, terminal_send_command and terminal_send_key, and what must hold
// before they do.
#pragma once

#include <future>
#include <string_view>

#include "BridgeCore/BridgeOperationState.h"
#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeCore/HistoryStore/PrivacySettingsStore.h"
#include "BridgeCore/SessionPermissionService.h"
#include "BridgeCore/TerminalSessionService.h"
#include "BridgeModels/ToolName.h"
#include "BridgeModels/ToolPayloads.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// A session that may be typed into, and what the adapter is told about busy tabs.
struct AdmittedDelivery {
  TerminalSession session;
  bool allowBusy;
};

/// Checks in this order: the session is valid now, the bridge is not paused, the session's permission allows
/// input, the tab is not busy unless the settings allow that. Thread-safe.
class DeliveryGuard {
 public:
  /// `tool` is sendCommand or sendKey; errors name it.
  DeliveryGuard(ToolName tool, TerminalSessionService& sessions, const SessionPermissionService& permissions,
                const BridgeOperationState& operationState, PrivacySettingsStore& settingsStore);

  /// The first check that fails throws its StructuredError; nothing has been typed then.
  AdmittedDelivery admit(const Uuid& sessionId, const Caller& caller) const;

  /// Waits for the adapter. A tab that turned busy after the check is refused in the words of the check,
  /// which the adapter leaves to the core; a refusal for another reason has the adapter's own words.
  void finish(const AdmittedDelivery& admitted, std::future<void> delivery) const;

 private:
  const std::string_view operation_;
  const catalogue::BusyInput input_;
  TerminalSessionService& sessions_;
  const SessionPermissionService& permissions_;
  const BridgeOperationState& operationState_;
  PrivacySettingsStore& settingsStore_;
};

/// Thread-safe: the adapter delivers one after the other. The answer promises delivery, not completion.
class CommandService {
 public:
  CommandService(TerminalAutomating& automation, TerminalSessionService& sessions,
                 const SessionPermissionService& permissions, const BridgeOperationState& operationState,
                 PrivacySettingsStore& settingsStore, Clock now);

  CommandPayload send(const SendCommandInput& input, const Caller& caller = {});

 private:
  TerminalAutomating& automation_;
  const DeliveryGuard guard_;
  const Clock now_;
};

/// As CommandService.
class KeyService {
 public:
  KeyService(TerminalAutomating& automation, TerminalSessionService& sessions,
             const SessionPermissionService& permissions, const BridgeOperationState& operationState,
             PrivacySettingsStore& settingsStore, Clock now);

  KeyPayload send(const SendKeyInput& input, const Caller& caller = {});

 private:
  TerminalAutomating& automation_;
  const DeliveryGuard guard_;
  const Clock now_;
};

}  // namespace velmora
