#include "BridgeCore/CommandService.h"

#include "BridgeCore/AdapterAnswer.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

CommandService::CommandService(TerminalAutomating& automation, TerminalSessionService& sessions,
                               const SessionPermissionService& permissions,
                               const BridgeOperationState& operationState,
                               PrivacySettingsStore& settingsStore, Clock now)
    : automation_(automation),
      guard_(sessions, permissions, operationState, settingsStore),
      now_(std::move(now)) {}

CommandPayload CommandService::send(const SendCommandInput& input) {
  input.validate();
  const auto [session, allowBusy] =
      guard_.admit(input.sessionId, wireName(ToolName::sendCommand), catalogue::BusyInput::command);
  answerAbout(session, automation_.send(input.command, session.tty, session.windowId, allowBusy));
  return CommandPayload(session.sessionId, now_());
}

}  // namespace velmora
