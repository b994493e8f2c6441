#include "VelmoraApp/Settings/PermissionSettings.h"

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

namespace {

bool isUsable(const BridgeStatus& status) {
  return status.terminalState != TerminalState::unavailable &&
         status.automationPermission != AutomationPermission::denied;
}

QString instructionForTmux(const BridgeStatus& status) {
  if (isUsable(status)) {
    return status.terminalState == TerminalState::available
               ? "A tmux server of yours is running, and Velmora may use it."
               : "tmux is ready to use. Start it in a terminal, or let an MCP client create a session.";
  }
  if (status.lastError) return text(status.lastError->message + " " + status.lastError->recoverySuggestion);
  return "tmux cannot be used at the moment. Install tmux 3.2 or newer.";
}

PermissionSettings settingsForTmux(const BridgeStatus& status) {
  return {
      .caption = "No system permission is needed. Velmora uses the tmux servers that run under your name.",
      .rows = {{.link = std::nullopt,
                .icon = "terminal",
                .title = "tmux",
                .instruction = instructionForTmux(status),
                .buttonTitle = {},
                .attention = !isUsable(status)}}};
}

// The system reports none of these reliably, so the rows are the same in every state.
PermissionSettings settingsForTerminalApp() {
  return {
      .caption =
          "Only these macOS Privacy & Security permissions are needed. After opening each panel, enable the item named Velmora unless the note says otherwise.",
      .rows = {
          {.link = SystemSettingsLink::accessibility,
           .icon = "figure.wave",
           .title = "Accessibility",
           .instruction =
               "Enable Velmora. This lets the app deliver special keys such as arrows, Tab, Return, and Escape.",
           .buttonTitle = "Open Accessibility Settings"},
          {.link = SystemSettingsLink::automation,
           .icon = "terminal",
           .title = "Automation",
           .instruction =
               "Find Velmora, then enable both Terminal and System Events. This lets the app control Terminal sessions and send special keys.",
           .buttonTitle = "Open Automation Settings"},
          {.link = SystemSettingsLink::screenRecording,
           .icon = "camera.viewfinder",
           .title = "Screen Recording",
           .instruction =
               "Enable Velmora. This is only needed when using terminal_capture_screen to capture a Terminal window.",
           .buttonTitle = "Open Screen Recording Settings"}}};
}

}  // namespace

PermissionSettings permissionSettings(GuidedTerminal terminal, const BridgeStatus& status) {
  return terminal == GuidedTerminal::tmux ? settingsForTmux(status) : settingsForTerminalApp();
}

}  // namespace velmora
