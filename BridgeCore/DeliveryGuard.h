// What must hold before anything is typed into a tab, in this order: the session is valid now, the bridge is
// not paused, the session's permission allows input, the tab is not busy unless the person allows that.
#pragma once

#include <string_view>

#include "BridgeCore/BridgeOperationState.h"
#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeCore/HistoryStore/PrivacySettingsStore.h"
#include "BridgeCore/SessionPermissionService.h"
#include "BridgeCore/TerminalSessionService.h"

namespace velmora {

/// A session that may be typed into, and what the adapter is told about busy tabs.
struct AdmittedDelivery {
  TerminalSession session;
  bool allowBusy;
};

/// Thread-safe. The first check that fails throws its StructuredError; nothing has been typed then.
class DeliveryGuard {
 public:
  DeliveryGuard(TerminalSessionService& sessions, const SessionPermissionService& permissions,
                const BridgeOperationState& operationState, PrivacySettingsStore& settingsStore);

  AdmittedDelivery admit(const Uuid& sessionId, std::string_view operation, catalogue::BusyInput input) const;

 private:
  TerminalSessionService& sessions_;
  const SessionPermissionService& permissions_;
  const BridgeOperationState& operationState_;
  PrivacySettingsStore& settingsStore_;
};

}  // namespace velmora
