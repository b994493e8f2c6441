// The help in English.
#include "VelmoraApp/Help/HelpCopy.h"

namespace velmora {

namespace {

constexpr HelpCopy copyForTerminalApp{
    .languageLabel = "Language",
    .installationTitle = "Install Location",
    .installationText = "These instructions assume Velmora.app is installed in /Applications.",
    .copyInstallPath = "Copy install path",
    .permissionsTitle = "1. Allow macOS Permissions",
    .permissionsInstruction =
        "Open Velmora. When macOS asks for Automation, Accessibility, or Screen Recording permission, allow it.",
    .permissionsRecovery =
        "If you denied a prompt, open System Settings > Privacy & Security. Enable Terminal and System Events under Automation, Velmora under Accessibility, and Velmora under Screen Recording. Then refresh Dashboard.",
    .registrationTitle = "2. Register the stdio Helper",
    .registrationInstruction = "Add this JSON to your MCP client's local stdio server configuration.",
    .copyMCPConfiguration = "Copy MCP configuration",
    .openClawJSONInstruction = "For OpenClaw, add this shape to ~/.openclaw/openclaw.json.",
    .copyOpenClawJSON = "Copy OpenClaw MCP configuration",
    .openClawCLIInstruction =
        "If OpenClaw CLI is available, these commands save the same server definition and probe the connection.",
    .copyOpenClawCLI = "Copy OpenClaw CLI commands",
    .copyHelperPath = "Copy helper path",
    .noNetworkText =
        "No URL, port, or token is required. Reconnect your MCP client after updating the configuration.",
    .statusTitle = "3. Check Connection Status",
    .statusInstruction = "First check the bridge and Terminal.app status.",
    .statusNote = "In Dashboard, confirm MCP is Active and Terminal automation is granted.",
    .createSessionTitle = "4. Create a Managed Terminal Window",
    .createSessionInstruction = "Create a new managed window where commands can be delivered safely.",
    .createSessionNote =
        "Use data.session.sessionId from the response in later calls. The official Terminal AppleScript dictionary does not provide safe tab creation, so only window is supported.",
    .sendCommandTitle = "5. Send a Command",
    .sendCommandInstruction =
        "Send the sessionId from the create response and the exact command string to run.",
    .sendCommandNote =
        "delivered_to_terminal means the command was delivered to Terminal. It does not guarantee completion, success, or an exit code. Busy sessions are rejected.",
    .specialKeyTitle = "6. Send Special Keys",
    .specialKeyInstruction = "Send special keys such as up or down arrow by key name.",
    .specialKeyNote =
        "Supported keys are upArrow, downArrow, leftArrow, rightArrow, return, escape, tab, delete, forwardDelete, home, end, pageUp, and pageDown. Special key input brings the target Terminal tab forward and requires macOS Accessibility plus System Events Automation permission.",
    .readOutputTitle = "7. Read Output",
    .readOutputInstruction =
        "Read a bounded suffix of the visible screen or scrollback for the same sessionId.",
    .readOutputNote =
        "source can be visible or history, and maxCharacters can be 1 to 50,000. For TUI screens, request a PNG with terminal_capture_screen.",
    .focusSessionTitle = "8. Show a Session in Terminal",
    .focusSessionInstruction =
        "Call the focus tool only when you explicitly want to show a selected session.",
    .focusSessionNote =
        "Status checks, command delivery, and output reads do not automatically bring Terminal to the front.",
    .existingSessionTitle = "Existing Sessions",
    .existingSessionNote =
        "Use terminal_list_sessions to inspect sessions. With the default policy, existing sessions are registered as managed; with Selective policy, they are registered as readOnly. Closed or changed sessionIds are not replaced with other tabs.",
    .toolCallCopyHelp =
        [](std::string_view toolName) { return "Copy " + std::string(toolName) + " call example"; },
};

constexpr HelpCopy copyForTmux = [] {
  auto copy = copyForTerminalApp;
  copy.installationText = "These instructions use the location of the Velmora that is running.";
  copy.permissionsTitle = "1. Start tmux";
  copy.permissionsInstruction =
      "Velmora needs no system permission. Start tmux in any terminal, or let your MCP client create a window.";
  copy.permissionsRecovery =
      "If Dashboard does not show tmux as available, check that tmux 3.2 or later runs under your own account. Then refresh Dashboard.";
  copy.statusInstruction = "First check the bridge and tmux status.";
  copy.statusNote = "In Dashboard, confirm Bridge is Active and Automation is granted.";
  copy.createSessionTitle = "4. Create a Managed tmux Window";
  copy.createSessionNote =
      "Use data.session.sessionId from the response in later calls. kind supports only window. It opens as a tmux session of its own, which tmux attach shows.";
  copy.sendCommandNote =
      "delivered_to_terminal means the command was delivered to tmux. It does not guarantee completion, success, or an exit code. Busy sessions are rejected.";
  copy.specialKeyNote =
      "Supported keys are upArrow, downArrow, leftArrow, rightArrow, return, escape, tab, delete, forwardDelete, home, end, pageUp, and pageDown. A key goes to the tmux pane of its session, which need not be in front, and requires no permission.";
  copy.focusSessionTitle = "8. Show a Session in tmux";
  copy.focusSessionNote =
      "Status checks, command delivery, and output reads do not switch to another tmux session or pane.";
  copy.existingSessionNote =
      "Use terminal_list_sessions to inspect sessions. With the default policy, existing sessions are registered as managed; with Selective policy, they are registered as readOnly. Closed or changed sessionIds are not replaced with other panes.";
  return copy;
}();

}  // namespace

constexpr HelpTexts englishHelp{.copyForTerminalApp = copyForTerminalApp,
                                .copyForTmux = copyForTmux,
                                .buttonWords = {.copy = "Copy", .copied = "Copied"}};

}  // namespace velmora
