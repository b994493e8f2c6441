#include "BridgeCore/Delivery.h"

#include <array>
#include <string>

#include "BridgeCore/AdapterAnswer.h"

namespace velmora {

namespace {

// What the keys of the extended form send, where their name does not say it. Function keys are those of a VT
// terminal, as xterm and tmux send them.
struct KeyText {
  TerminalKey key;
  std::string_view text;
};

constexpr auto keyTexts = std::to_array<KeyText>({
    {TerminalKey::enter, "\r"},
    {TerminalKey::backspace, "\177"},
    {TerminalKey::space, " "},
    {TerminalKey::shiftTab, "\033[Z"},
    {TerminalKey::insert, "\033[2~"},
    {TerminalKey::f1, "\033OP"},
    {TerminalKey::f2, "\033OQ"},
    {TerminalKey::f3, "\033OR"},
    {TerminalKey::f4, "\033OS"},
    {TerminalKey::f5, "\033[15~"},
    {TerminalKey::f6, "\033[17~"},
    {TerminalKey::f7, "\033[18~"},
    {TerminalKey::f8, "\033[19~"},
    {TerminalKey::f9, "\033[20~"},
    {TerminalKey::f10, "\033[21~"},
    {TerminalKey::f11, "\033[23~"},
    {TerminalKey::f12, "\033[24~"},
});

std::string keyText(TerminalKey key) {
  for (const auto& entry : keyTexts) {
    if (entry.key == key) return std::string(entry.text);
  }
  const char letter = wireName(key).back();  // "controlC"
  return std::string(1, static_cast<char>(letter & 0x1F));
}

std::string repeated(const std::string& text, std::int64_t count) {
  std::string all;
  for (std::int64_t i = 0; i < count; ++i) all += text;
  return all;
}

}  // namespace

DeliveryGuard::DeliveryGuard(ToolName tool, TerminalSessionService& sessions,
                             const SessionPermissionService& permissions,
                             const BridgeOperationState& operationState, PrivacySettingsStore& settingsStore,
                             HasTyped hasTyped)
    : operation_(wireName(tool)),
      input_(tool == ToolName::sendCommand ? catalogue::BusyInput::command : catalogue::BusyInput::keys),
      sessions_(sessions),
      permissions_(permissions),
      operationState_(operationState),
      settingsStore_(settingsStore),
      hasTyped_(std::move(hasTyped)) {}

AdmittedDelivery DeliveryGuard::admit(const Uuid& sessionId, const Caller& caller) const {
  auto session = sessions_.validate(sessionId, operation_, caller);
  const auto reference = session.reference();
  operationState_.requireMutationAllowed(operation_, reference);
  if (!permissions_.canSend(session)) throw catalogue::sessionNotAllowed(operation_, reference);
  const auto settings = settingsStore_.current();
  // While a window of the bridge's own is idle, everything that guards a user's line holds there too.
  const bool allowBusy =
      settings.allowBusySessionInput || (settings.allowOwnBusySessionInput.value_or(false) && session.busy &&
                                         session.bridgeCreated && session.neverShown);
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
  if (hasTyped_) hasTyped_(admitted.session.sessionId);
}

CommandService::CommandService(TerminalAutomating& automation, TerminalSessionService& sessions,
                               const SessionPermissionService& permissions,
                               const BridgeOperationState& operationState,
                               PrivacySettingsStore& settingsStore, Clock now, HasTyped hasTyped)
    : automation_(automation),
      sessions_(sessions),
      completion_(automation, sessions, permissions),
      guard_(ToolName::sendCommand, sessions, permissions, operationState, settingsStore,
             std::move(hasTyped)),
      now_(std::move(now)) {}

CommandPayload CommandService::send(const SendCommandInput& input, const Caller& caller) {
  input.validate();
  const auto admitted = guard_.admit(input.sessionId, caller);
  const auto& session = admitted.session;
  const auto submits = input.submit.value_or(true);
  const auto watch = input.waitSeconds.value_or(0) > 0 ? completion_.watch(input.command, session, caller)
                                                       : std::shared_ptr<TabWatch>();
  guard_.finish(admitted, submits ? automation_.send(input.command, session.tty, session.windowId,
                                                     admitted.allowBusy, caller)
                                  : automation_.typeUnsubmitted(input.command, session.tty, session.windowId,
                                                                admitted.allowBusy, caller));
  CommandPayload payload(session.sessionId, now_());
  if (watch) payload.completion = completion_.wait(watch, input, caller);
  payload.session = sessions_.stateAfter(session.sessionId, wireName(ToolName::sendCommand),
                                         watch ? caller.asOfNow() : caller);
  return payload;
}

KeyService::KeyService(TerminalAutomating& automation, TerminalSessionService& sessions,
                       const SessionPermissionService& permissions,
                       const BridgeOperationState& operationState, PrivacySettingsStore& settingsStore,
                       Clock now, HasTyped hasTyped)
    : automation_(automation),
      sessions_(sessions),
      guard_(ToolName::sendKey, sessions, permissions, operationState, settingsStore, std::move(hasTyped)),
      now_(std::move(now)) {}

KeyPayload KeyService::send(const SendKeyInput& input, const Caller& caller) {
  input.validate();
  const auto admitted = guard_.admit(input.sessionId, caller);
  const auto& session = admitted.session;
  guard_.finish(admitted,
                isExtended(input.key)
                    ? automation_.typeUnsubmitted(repeated(keyText(input.key), input.repeatCount),
                                                  session.tty, session.windowId, admitted.allowBusy, caller)
                    : automation_.send(input.key, input.repeatCount, session.tty, session.windowId,
                                       admitted.allowBusy, caller));
  KeyPayload payload(session.sessionId, input.key, input.repeatCount, now_());
  payload.session = sessions_.stateAfter(session.sessionId, wireName(ToolName::sendKey), caller);
  return payload;
}

}  // namespace velmora
