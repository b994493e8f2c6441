// The nine tools and their wire names.
#pragma once

#include "BridgeModels/WireNames.h"

namespace velmora {

enum class ToolName {
  status,
  listSessions,
  getActiveSession,
  createSession,
  sendCommand,
  sendKey,
  readOutput,
  captureScreen,
  focusSession,
};

template <>
inline constexpr auto enumCases<ToolName> = std::to_array<EnumCase<ToolName>>({
    {ToolName::status, "terminal_status"},
    {ToolName::listSessions, "terminal_list_sessions"},
    {ToolName::getActiveSession, "terminal_get_active_session"},
    {ToolName::createSession, "terminal_create_session"},
    {ToolName::sendCommand, "terminal_send_command"},
    {ToolName::sendKey, "terminal_send_key"},
    {ToolName::readOutput, "terminal_read_output"},
    {ToolName::captureScreen, "terminal_capture_screen"},
    {ToolName::focusSession, "terminal_focus_session"},
});

}  // namespace velmora
