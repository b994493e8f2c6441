#include "BridgeCore/KeyService.h"

#include "BridgeCore/AdapterAnswer.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

KeyService::KeyService(TerminalAutomating& automation, TerminalSessionService& sessions,
                       const SessionPermissionService& permissions,
                       const BridgeOperationState& operationState, PrivacySettingsStore& settingsStore,
                       Clock now)
    : automation_(automation),
      guard_(sessions, permissions, operationState, settingsStore),
      now_(std::move(now)) {}

KeyPayload KeyService::send(const SendKeyInput& input) {
  input.validate();
  const auto [session, allowBusy] =
      guard_.admit(input.sessionId, wireName(ToolName::sendKey), catalogue::BusyInput::keys);
  answerAbout(session,
              automation_.send(input.key, input.repeatCount, session.tty, session.windowId, allowBusy));
  return KeyPayload(session.sessionId, input.key, input.repeatCount, now_());
}

}  // namespace velmora
