#include "BridgeCore/DeliveryGuard.h"

namespace velmora {

DeliveryGuard::DeliveryGuard(TerminalSessionService& sessions, const SessionPermissionService& permissions,
                             const BridgeOperationState& operationState, PrivacySettingsStore& settingsStore)
    : sessions_(sessions),
      permissions_(permissions),
      operationState_(operationState),
      settingsStore_(settingsStore) {}

AdmittedDelivery DeliveryGuard::admit(const Uuid& sessionId, std::string_view operation,
                                      catalogue::BusyInput input) const {
  auto session = sessions_.validate(sessionId);
  const auto reference = session.reference();
  operationState_.requireMutationAllowed(operation, reference);
  if (!permissions_.canSend(session)) throw catalogue::sessionNotAllowed(operation, reference);
  const bool allowBusy = settingsStore_.current().allowBusySessionInput;
  if (session.busy && !allowBusy) throw catalogue::sessionBusy(input, reference);
  return {std::move(session), allowBusy};
}

}  // namespace velmora
