#include "BridgeCore/Delivery.h"

#include "BridgeCore/AdapterAnswer.h"

namespace velmora {

DeliveryGuard::DeliveryGuard(ToolName tool, TerminalSessionService& sessions,
                             const SessionPermissionService& permissions,
                             const BridgeOperationState& operationState, PrivacySettingsStore& settingsStore)
    : operation_(wireName(tool)),
      input_(tool == ToolName::sendCommand ? catalogue::BusyInput::command : catalogue::BusyInput::keys),
      sessions_(sessions),
      permissions_(permissions),
      operationState_(operationState),
      settingsStore_(settingsStore) {}

AdmittedDelivery DeliveryGuard::admit(const Uuid& sessionId, const Caller& caller) const {
  auto session = sessions_.validate(sessionId, operation_, caller);
  const auto reference = session.reference();
  operationState_.requireMutationAllowed(operation_, reference);
  if (!permissions_.canSend(session)) throw catalogue::sessionNotAllowed(operation_, reference);
  const bool allowBusy = settingsStore_.current().allowBusySessionInput;
  if (session.busy && !allowBusy) throw catalogue::sessionBusy(input_, reference);
  return {std::move(session), allowBusy};
}

void DeliveryGuard::finish(const AdmittedDelivery& admitted, std::future<void> delivery) const {
  const auto reference = admitted.session.reference();
  try {
    answerOf(std::move(delivery), operation_, reference);
  } catch (const StructuredError& error) {
    if (error.code != ErrorCode::sessionBusy || !error.message.empty()) throw;
    throw catalogue::sessionBusy(input_, reference);
  }
}

CommandService::CommandService(TerminalAutomating& automation, TerminalSessionService& sessions,
                               const SessionPermissionService& permissions,
                               const BridgeOperationState& operationState,
                               PrivacySettingsStore& settingsStore, Clock now)
    : automation_(automation),
      guard_(ToolName::sendCommand, sessions, permissions, operationState, settingsStore),
      now_(std::move(now)) {}

CommandPayload CommandService::send(const SendCommandInput& input, const Caller& caller) {
  input.validate();
  const auto admitted = guard_.admit(input.sessionId, caller);
  const auto& session = admitted.session;
  guard_.finish(admitted,
                automation_.send(input.command, session.tty, session.windowId, admitted.allowBusy, caller));
  return CommandPayload(session.sessionId, now_());
}

KeyService::KeyService(TerminalAutomating& automation, TerminalSessionService& sessions,
                       const SessionPermissionService& permissions,
                       const BridgeOperationState& operationState, PrivacySettingsStore& settingsStore,
                       Clock now)
    : automation_(automation),
      guard_(ToolName::sendKey, sessions, permissions, operationState, settingsStore),
      now_(std::move(now)) {}

KeyPayload KeyService::send(const SendKeyInput& input, const Caller& caller) {
  input.validate();
  const auto admitted = guard_.admit(input.sessionId, caller);
  const auto& session = admitted.session;
  guard_.finish(admitted, automation_.send(input.key, input.repeatCount, session.tty, session.windowId,
                                           admitted.allowBusy, caller));
  return KeyPayload(session.sessionId, input.key, input.repeatCount, now_());
}

}  // namespace velmora
