#include "VelmoraApp/Settings/PermissionSettings.h"

#include <QtCore/QCoreApplication>

#include "VelmoraApp/AppModel/BridgeTexts.h"

namespace velmora {

namespace {

bool isUsable(const BridgeStatus& status) {
  return status.terminalState != TerminalState::unavailable &&
         status.automationPermission != AutomationPermission::denied;
}

QString translated(const char* text) { return QCoreApplication::translate("PermissionSettings", text); }

QString instructionForTmux(const BridgeStatus& status) {
  if (isUsable(status)) {
    return status.terminalState == TerminalState::available
               ? translated(QT_TRANSLATE_NOOP("PermissionSettings",
                                              "A tmux server of yours is running, and Velmora may use it."))
               : translated(QT_TRANSLATE_NOOP(
                     "PermissionSettings",
                     "tmux is ready to use. Start it in a terminal, or let an MCP client create a session."));
  }
  if (status.lastError) return problemText(*status.lastError);
  return translated(QT_TRANSLATE_NOOP("PermissionSettings",
                                      "tmux cannot be used at the moment. Install tmux 3.2 or newer."));
}

PermissionSettings settingsForTmux(const BridgeStatus& status) {
  return {.caption = translated(QT_TRANSLATE_NOOP(
              "PermissionSettings",
              "No system permission is needed. Velmora uses a tmux server that runs under your name.")),
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
      .caption = translated(QT_TRANSLATE_NOOP(
          "PermissionSettings",
          "Only these macOS Privacy & Security permissions are needed. After opening each panel, enable the item named Velmora unless the note says otherwise.")),
      .rows = {
          {.link = SystemSettingsLink::accessibility,
           .icon = "figure.wave",
           .title = translated(QT_TRANSLATE_NOOP("PermissionSettings", "Accessibility")),
           .instruction = translated(QT_TRANSLATE_NOOP(
               "PermissionSettings",
               "Enable Velmora. This lets the app deliver special keys such as arrows, Tab, Return, and Escape.")),
           .buttonTitle = translated(QT_TRANSLATE_NOOP("PermissionSettings", "Open Accessibility Settings"))},
          {.link = SystemSettingsLink::automation,
           .icon = "terminal",
           .title = translated(QT_TRANSLATE_NOOP("PermissionSettings", "Automation")),
           .instruction = translated(QT_TRANSLATE_NOOP(
               "PermissionSettings",
               "Find Velmora, then enable both Terminal and System Events. This lets the app control Terminal sessions and send special keys.")),
           .buttonTitle = translated(QT_TRANSLATE_NOOP("PermissionSettings", "Open Automation Settings"))},
          {.link = SystemSettingsLink::screenRecording,
           .icon = "camera.viewfinder",
           .title = translated(QT_TRANSLATE_NOOP("PermissionSettings", "Screen Recording")),
           .instruction = translated(QT_TRANSLATE_NOOP(
               "PermissionSettings",
               "Enable Velmora. This is only needed when using terminal_capture_screen to capture a Terminal window.")),
           .buttonTitle =
               translated(QT_TRANSLATE_NOOP("PermissionSettings", "Open Screen Recording Settings"))}}};
}

}  // namespace

PermissionSettings permissionSettings(GuidedTerminal terminal, const BridgeStatus& status) {
  return terminal == GuidedTerminal::tmux ? settingsForTmux(status) : settingsForTerminalApp();
}

}  // namespace velmora
