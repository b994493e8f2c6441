#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/Settings/PermissionSettings.h"

namespace velmora {

namespace {

bool isUsable(const BridgeStatus& status) {
  return status.terminalState != TerminalState::unavailable &&
         status.automationPermission != AutomationPermission::denied;
}

QString instruction(const BridgeStatus& status) {
  if (isUsable(status)) {
    return status.terminalState == TerminalState::available
               ? "A tmux server of yours is running, and Velmora may use it."
               : "tmux is ready to use. Start it in a terminal, or let an MCP client create a session.";
  }
  if (status.lastError) return text(status.lastError->message + " " + status.lastError->recoverySuggestion);
  return "tmux cannot be used at the moment. Install tmux 3.2 or newer.";
}

}  // namespace

PermissionSettings permissionSettings(const BridgeStatus& status) {
  return {
      .caption = "No system permission is needed. Velmora uses the tmux servers that run under your name.",
      .rows = {{.link = std::nullopt,
                .icon = "terminal",
                .title = "tmux",
                .instruction = instruction(status),
                .buttonTitle = {},
                .attention = !isUsable(status)}}};
}

}  // namespace velmora
