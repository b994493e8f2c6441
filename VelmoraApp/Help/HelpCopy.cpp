#include "VelmoraApp/Help/HelpCopy.h"

#include <QtCore/QtGlobal>
#include <boost/describe/members.hpp>
#include <boost/mp11/algorithm.hpp>

#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/AppModel/Translation.h"

namespace velmora {

namespace {

HelpCopy englishForTerminalApp() {
  return {
      .languageLabel = QT_TRANSLATE_NOOP("Help", "Language"),
      .installationTitle = QT_TRANSLATE_NOOP("Help", "Install Location"),
      .installationText =
          QT_TRANSLATE_NOOP("Help", "These instructions assume Velmora.app is installed in /Applications."),
      .copyInstallPath = QT_TRANSLATE_NOOP("Help", "Copy install path"),
      .permissionsTitle = QT_TRANSLATE_NOOP("Help", "1. Allow macOS Permissions"),
      .permissionsInstruction = QT_TRANSLATE_NOOP(
          "Help",
          "Open Velmora. When macOS asks for Automation, Accessibility, or Screen Recording permission, allow it."),
      .permissionsRecovery = QT_TRANSLATE_NOOP(
          "Help",
          "If you denied a prompt, open System Settings > Privacy & Security. Enable Terminal and System Events under Automation, Velmora under Accessibility, and Velmora under Screen Recording. Then refresh Dashboard."),
      .registrationTitle = QT_TRANSLATE_NOOP("Help", "2. Register the stdio Helper"),
      .registrationInstruction =
          QT_TRANSLATE_NOOP("Help", "Add this JSON to your MCP client's local stdio server configuration."),
      .copyMCPConfiguration = QT_TRANSLATE_NOOP("Help", "Copy MCP configuration"),
      .openClawJSONInstruction =
          QT_TRANSLATE_NOOP("Help", "For OpenClaw, add this shape to ~/.openclaw/openclaw.json."),
      .copyOpenClawJSON = QT_TRANSLATE_NOOP("Help", "Copy OpenClaw MCP configuration"),
      .openClawCLIInstruction = QT_TRANSLATE_NOOP(
          "Help",
          "If OpenClaw CLI is available, these commands save the same server definition and probe the connection."),
      .copyOpenClawCLI = QT_TRANSLATE_NOOP("Help", "Copy OpenClaw CLI commands"),
      .copyHelperPath = QT_TRANSLATE_NOOP("Help", "Copy helper path"),
      .noNetworkText = QT_TRANSLATE_NOOP(
          "Help",
          "No URL, port, or token is required. Reconnect your MCP client after updating the configuration."),
      .statusTitle = QT_TRANSLATE_NOOP("Help", "3. Check Connection Status"),
      .statusInstruction = QT_TRANSLATE_NOOP("Help", "First check the bridge and Terminal.app status."),
      .statusNote = QT_TRANSLATE_NOOP(
          "Help", "In Dashboard, confirm MCP is Active and Terminal automation is granted."),
      .createSessionTitle = QT_TRANSLATE_NOOP("Help", "4. Create a Managed Terminal Window"),
      .createSessionInstruction =
          QT_TRANSLATE_NOOP("Help", "Create a new managed window where commands can be delivered safely."),
      .createSessionNote = QT_TRANSLATE_NOOP(
          "Help",
          "Use data.session.sessionId from the response in later calls. The official Terminal AppleScript dictionary does not provide safe tab creation, so only window is supported."),
      .sendCommandTitle = QT_TRANSLATE_NOOP("Help", "5. Send a Command"),
      .sendCommandInstruction = QT_TRANSLATE_NOOP(
          "Help", "Send the sessionId from the create response and the exact command string to run."),
      .sendCommandNote = QT_TRANSLATE_NOOP(
          "Help",
          "delivered_to_terminal means the command was delivered to Terminal. It does not guarantee completion, success, or an exit code. Busy sessions are rejected."),
      .specialKeyTitle = QT_TRANSLATE_NOOP("Help", "6. Send Special Keys"),
      .specialKeyInstruction =
          QT_TRANSLATE_NOOP("Help", "Send special keys such as up or down arrow by key name."),
      .specialKeyNote = QT_TRANSLATE_NOOP(
          "Help",
          "Supported keys are upArrow, downArrow, leftArrow, rightArrow, return, escape, tab, delete, forwardDelete, home, end, pageUp, and pageDown. Special key input brings the target Terminal tab forward and requires macOS Accessibility plus System Events Automation permission."),
      .readOutputTitle = QT_TRANSLATE_NOOP("Help", "7. Read Output"),
      .readOutputInstruction = QT_TRANSLATE_NOOP(
          "Help", "Read a bounded suffix of the visible screen or scrollback for the same sessionId."),
      .readOutputNote = QT_TRANSLATE_NOOP(
          "Help",
          "source can be visible or history, and maxCharacters can be 1 to 50,000. For TUI screens, request a PNG with terminal_capture_screen."),
      .focusSessionTitle = QT_TRANSLATE_NOOP("Help", "8. Show a Session in Terminal"),
      .focusSessionInstruction = QT_TRANSLATE_NOOP(
          "Help", "Call the focus tool only when you explicitly want to show a selected session."),
      .focusSessionNote = QT_TRANSLATE_NOOP(
          "Help",
          "Status checks, command delivery, and output reads do not automatically bring Terminal to the front."),
      .existingSessionTitle = QT_TRANSLATE_NOOP("Help", "Existing Sessions"),
      .existingSessionNote = QT_TRANSLATE_NOOP(
          "Help",
          "Use terminal_list_sessions to inspect sessions. With the default policy, existing sessions are registered as managed; with Selective policy, they are registered as readOnly. Closed or changed sessionIds are not replaced with other tabs."),
      .copyCallExample = QT_TRANSLATE_NOOP("Help", "Copy %1 call example"),
      .copy = QT_TRANSLATE_NOOP("Help", "Copy"),
      .copied = QT_TRANSLATE_NOOP("Help", "Copied"),
  };
}

HelpCopy englishForTmux() {
  auto copy = englishForTerminalApp();
  copy.installationText =
      QT_TRANSLATE_NOOP("Help", "These instructions use the location of the Velmora that is running.");
  copy.permissionsTitle = QT_TRANSLATE_NOOP("Help", "1. Start tmux");
  copy.permissionsInstruction = QT_TRANSLATE_NOOP(
      "Help",
      "Velmora needs no system permission. Start tmux in any terminal, or let your MCP client create a window.");
  copy.permissionsRecovery = QT_TRANSLATE_NOOP(
      "Help",
      "If Dashboard does not show tmux as available, check that tmux 3.2 or later runs under your own account. Then refresh Dashboard.");
  copy.statusInstruction = QT_TRANSLATE_NOOP("Help", "First check the bridge and tmux status.");
  copy.statusNote =
      QT_TRANSLATE_NOOP("Help", "In Dashboard, confirm Bridge is Active and Automation is granted.");
  copy.createSessionTitle = QT_TRANSLATE_NOOP("Help", "4. Create a Managed tmux Window");
  copy.createSessionNote = QT_TRANSLATE_NOOP(
      "Help",
      "Use data.session.sessionId from the response in later calls. kind supports only window. It opens as a tmux session of its own, which tmux attach shows.");
  copy.sendCommandNote = QT_TRANSLATE_NOOP(
      "Help",
      "delivered_to_terminal means the command was delivered to tmux. It does not guarantee completion, success, or an exit code. Busy sessions are rejected.");
  copy.specialKeyNote = QT_TRANSLATE_NOOP(
      "Help",
      "Supported keys are upArrow, downArrow, leftArrow, rightArrow, return, escape, tab, delete, forwardDelete, home, end, pageUp, and pageDown. A key goes to the tmux pane of its session, which need not be in front, and requires no permission.");
  copy.focusSessionTitle = QT_TRANSLATE_NOOP("Help", "8. Show a Session in tmux");
  copy.focusSessionNote = QT_TRANSLATE_NOOP(
      "Help",
      "Status checks, command delivery, and output reads do not switch to another tmux session or pane.");
  copy.existingSessionNote = QT_TRANSLATE_NOOP(
      "Help",
      "Use terminal_list_sessions to inspect sessions. With the default policy, existing sessions are registered as managed; with Selective policy, they are registered as readOnly. Closed or changed sessionIds are not replaced with other panes.");
  return copy;
}

std::string translated(const Translation& translation, const std::string& english) {
  return translation.of("Help", english.c_str()).toStdString();
}

}  // namespace

std::string HelpCopy::toolCallCopyHelp(std::string_view toolName) const {
  return QString::fromStdString(copyCallExample).arg(text(toolName)).toStdString();
}

HelpCopy helpCopy(Language language, GuidedTerminal terminal) {
  auto copy = terminal == GuidedTerminal::tmux ? englishForTmux() : englishForTerminalApp();
  const Translation translation(language);
  using Members = boost::describe::describe_members<HelpCopy, boost::describe::mod_public>;
  boost::mp11::mp_for_each<Members>(
      [&](auto member) { copy.*member.pointer = translated(translation, copy.*member.pointer); });
  return copy;
}

}  // namespace velmora
