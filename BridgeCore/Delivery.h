// The two services that type into a tab, terminal_send_command and terminal_send_key, and what must hold
// before they do.
#pragma once

#include <functional>
#include <future>
#include <string_view>

#include "BridgeCore/BridgeOperationState.h"
#include "BridgeCore/Completion.h"
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

/// Is told of each session that was typed into, as soon as it was; must not block.
using HasTyped = std::function<void(const Uuid& sessionId)>;

/// Checks in this order: the session is valid now, the bridge is not paused, the session's permission allows
/// input, the tab is not busy unless the settings allow that: for all, or for those that the bridge opened
/// and that no user's terminal has shown. Thread-safe.
class DeliveryGuard {
 public:
  /// `tool` is sendCommand or sendKey; errors name it.
  DeliveryGuard(ToolName tool, TerminalSessionService& sessions, const SessionPermissionService& permissions,
                const BridgeOperationState& operationState, PrivacySettingsStore& settingsStore,
                HasTyped hasTyped);

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
  const HasTyped hasTyped_;
};

/// Thread-safe: the adapter delivers one after the other. The answer promises delivery, and completion only
/// when the caller waits for it.
class CommandService {
 public:
  CommandService(TerminalAutomating& automation, TerminalSessionService& sessions,
                 const SessionPermissionService& permissions, const BridgeOperationState& operationState,
                 PrivacySettingsStore& settingsStore, Clock now, HasTyped hasTyped = {});

  CommandPayload send(const SendCommandInput& input, const Caller& caller = {});

 private:
  TerminalAutomating& automation_;
  TerminalSessionService& sessions_;
  CompletionService completion_;
  const DeliveryGuard guard_;
  const Clock now_;
};

/// As CommandService.
class KeyService {
 public:
  KeyService(TerminalAutomating& automation, TerminalSessionService& sessions,
             const SessionPermissionService& permissions, const BridgeOperationState& operationState,
             PrivacySettingsStore& settingsStore, Clock now, HasTyped hasTyped = {});

  KeyPayload send(const SendKeyInput& input, const Caller& caller = {});

 private:
  TerminalAutomating& automation_;
  TerminalSessionService& sessions_;
  const DeliveryGuard guard_;
  const Clock now_;
};

}  // namespace velmora
