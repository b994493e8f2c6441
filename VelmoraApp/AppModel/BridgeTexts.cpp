#include "VelmoraApp/AppModel/BridgeTexts.h"

#include <QtCore/QCoreApplication>
#include <string>

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

namespace {

// For lupdate, which reads only the window's own source; scripts/check-texts.py compares them with what the
// bridge says.
[[maybe_unused]] constexpr const char* known[] = {
    QT_TRANSLATE_NOOP("Bridge", "Correct the request arguments and try again."),
    QT_TRANSLATE_NOOP("Bridge", "MCP change operations are paused."),
    QT_TRANSLATE_NOOP("Bridge", "Resume MCP operations in Velmora, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "Terminal.app is not running."),
    QT_TRANSLATE_NOOP("Bridge", "Open Terminal.app or create a new managed session, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "Terminal.app did not respond within five seconds."),
    QT_TRANSLATE_NOOP("Bridge", "Verify Terminal.app is responsive, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "Terminal automation permission was denied."),
    QT_TRANSLATE_NOOP("Bridge", "Allow Terminal automation for Velmora in System Settings, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "Terminal.app has no selected tab."),
    QT_TRANSLATE_NOOP("Bridge", "Open a Terminal window and retry."),
    QT_TRANSLATE_NOOP("Bridge", "The requested Terminal session was not found."),
    QT_TRANSLATE_NOOP("Bridge", "List sessions and select a current sessionId."),
    QT_TRANSLATE_NOOP("Bridge", "The Terminal session is no longer the registered tab."),
    QT_TRANSLATE_NOOP("Bridge", "List sessions and use the newly issued sessionId."),
    QT_TRANSLATE_NOOP("Bridge", "Terminal returned an ambiguous or empty TTY identity."),
    QT_TRANSLATE_NOOP("Bridge", "Refresh the session list after Terminal.app settles."),
    QT_TRANSLATE_NOOP("Bridge", "This Terminal session is not allowed for the requested operation."),
    QT_TRANSLATE_NOOP("Bridge", "Allow the session in Velmora or choose a managed session."),
    QT_TRANSLATE_NOOP("Bridge", "Tool arguments could not be decoded using the advertised schema."),
    QT_TRANSLATE_NOOP("Bridge", "Terminal.app could not complete the requested automation operation."),
    QT_TRANSLATE_NOOP("Bridge", "Check Terminal.app and automation permission, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "Terminal output is unavailable."),
    QT_TRANSLATE_NOOP("Bridge", "Check the Terminal tab and retry with visible output."),
    QT_TRANSLATE_NOOP("Bridge", "The output exceeded the requested character limit."),
    QT_TRANSLATE_NOOP("Bridge", "Request a larger maximum up to 50000 characters if more context is needed."),
    QT_TRANSLATE_NOOP("Bridge", "Terminal screen capture is unavailable."),
    QT_TRANSLATE_NOOP(
        "Bridge",
        "Allow Screen Recording for Velmora in System Settings, keep the Terminal window visible, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "The Terminal session is busy."),
    QT_TRANSLATE_NOOP(
        "Bridge",
        "Enable busy session input in Velmora settings only when you intend to send input to the foreground process, or wait for the current process to finish and retry."),
    QT_TRANSLATE_NOOP(
        "Bridge",
        "Enable busy session input in Velmora settings only when you intend to send keys to the foreground process, or wait for the current process to finish and retry."),
    QT_TRANSLATE_NOOP("Bridge", "Stored history could not be read."),
    QT_TRANSLATE_NOOP("Bridge", "The history schema is not supported."),
    QT_TRANSLATE_NOOP("Bridge", "History could not be saved locally."),
    QT_TRANSLATE_NOOP("Bridge", "History file permissions could not be applied."),
    QT_TRANSLATE_NOOP("Bridge", "History could not be deleted."),
    QT_TRANSLATE_NOOP("Bridge", "The settings schema is not supported."),
    QT_TRANSLATE_NOOP("Bridge", "Settings file permissions could not be applied."),
    QT_TRANSLATE_NOOP("Bridge", "Application Support permissions could not be applied."),
    QT_TRANSLATE_NOOP("Bridge", "The change holds, but could not be kept for the next start."),
    QT_TRANSLATE_NOOP("Bridge", "Check local disk permissions and available space, then retry."),
    QT_TRANSLATE_NOOP(
        "Bridge",
        "Run it in a terminal outside tmux and outside the tabs that Velmora lists, such as another SSH login or terminal window, or use Velmora's window."),
    QT_TRANSLATE_NOOP("Bridge", "Write more of the session's id."),
    QT_TRANSLATE_NOOP("Bridge", "`velmora sessions` lists them."),
    QT_TRANSLATE_NOOP("Bridge", "Something went wrong that has no name."),
    QT_TRANSLATE_NOOP("Bridge", "The client left before its call was begun; nothing was done."),
    QT_TRANSLATE_NOOP("Bridge", "Call again."),
    QT_TRANSLATE_NOOP("Bridge", "Special key input is not supported by this automation adapter."),
    QT_TRANSLATE_NOOP("Bridge", "Leave out submit, and use the keys of the plain form."),
    QT_TRANSLATE_NOOP("Bridge", "Leave out name, directory, columns and rows."),
    QT_TRANSLATE_NOOP("Bridge", "Leave out format."),
    QT_TRANSLATE_NOOP("Bridge", "List the sessions before you create another one."),
    QT_TRANSLATE_NOOP("Bridge", "Read the session's output to see what happened before you send again."),
    QT_TRANSLATE_NOOP("Bridge", "Check the owner and the permissions of the tmux socket and its folder."),
    QT_TRANSLATE_NOOP("Bridge", "The tmux server does not admit this user."),
    QT_TRANSLATE_NOOP("Bridge", "Allow the user with tmux server-access -a, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "The tmux server admits this user for reading only."),
    QT_TRANSLATE_NOOP("Bridge", "Allow writing with tmux server-access -w, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "The tmux server ended during the call."),
    QT_TRANSLATE_NOOP("Bridge", "Check the tmux server, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "tmux did not answer in time."),
    QT_TRANSLATE_NOOP("Bridge", "Check that the tmux server responds, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "Velmora is shutting down."),
    QT_TRANSLATE_NOOP("Bridge", "Start Velmora again, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "The terminal's history is too large to be read."),
    QT_TRANSLATE_NOOP("Bridge", "Retry with visible output, or clear the history with tmux clear-history."),
    QT_TRANSLATE_NOOP("Bridge",
                      "Make the folder and the socket your own and private (chmod 700), then retry."),
    QT_TRANSLATE_NOOP("Bridge", "No tmux server is running."),
    QT_TRANSLATE_NOOP("Bridge", "Create a session with terminal_create_session or start tmux, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "Install a newer tmux and restart its server."),
    QT_TRANSLATE_NOOP("Bridge", "End the tmux sessions and restart the tmux server, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "The tmux pane of this session is gone or has moved."),
    QT_TRANSLATE_NOOP("Bridge", "The program in this tmux pane has ended."),
    QT_TRANSLATE_NOOP("Bridge", "List sessions and choose another one, or create a new one."),
    QT_TRANSLATE_NOOP("Bridge", "Input to this tmux pane is switched off."),
    QT_TRANSLATE_NOOP("Bridge", "Allow input with tmux select-pane -e, or choose another session."),
    QT_TRANSLATE_NOOP("Bridge", "Someone is typing in this session."),
    QT_TRANSLATE_NOOP("Bridge", "Wait until the user has submitted or erased the line, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "A program is asking for a secret in the tmux pane."),
    QT_TRANSLATE_NOOP("Bridge", "Focus the session and let the user type it, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "Send it in shorter lines, or write it to a file and run that."),
    QT_TRANSLATE_NOOP("Bridge", "Command must not contain a NUL character."),
    QT_TRANSLATE_NOOP("Bridge", "repeatCount must be between 1 and 50."),
    QT_TRANSLATE_NOOP("Bridge",
                      "tmux ended the new session at once because its option destroy-unattached is on."),
    QT_TRANSLATE_NOOP("Bridge", "The new tmux session ended at once."),
    QT_TRANSLATE_NOOP("Bridge", "Switch the option off (tmux set -g destroy-unattached off), then retry."),
    QT_TRANSLATE_NOOP("Bridge", "Check that the default shell of tmux starts, then retry."),
    QT_TRANSLATE_NOOP(
        "Bridge",
        "Install bubblewrap and allow it user namespaces, or switch containNewWindows off in the settings."),
    QT_TRANSLATE_NOOP("Bridge", "tmux gave an answer that cannot be understood."),
    QT_TRANSLATE_NOOP("Bridge",
                      "The session is selected in tmux, but the desktop's terminal did not show it."),
    QT_TRANSLATE_NOOP("Bridge", "Attach to it in a terminal with tmux attach-session."),
    QT_TRANSLATE_NOOP("Bridge", "Check the temporary folder's permissions and free space, then retry."),
    QT_TRANSLATE_NOOP("Bridge", "Choose another name, or leave it out."),
    QT_TRANSLATE_NOOP("Bridge", "Name a directory that exists."),
    QT_TRANSLATE_NOOP("Bridge", "It is unknown whether the session was created."),
    QT_TRANSLATE_NOOP("Bridge", "The outcome is unknown: the input may have been typed."),
    QT_TRANSLATE_NOOP("Bridge", "Velmora cannot tell which process it is."),
    QT_TRANSLATE_NOOP("Bridge", "Meanwhile another process serves there."),
    QT_TRANSLATE_NOOP("Bridge", "the path is too long, or what stands there is not this user's."),
    QT_TRANSLATE_NOOP("Bridge", "a process of another user was at the other end."),
    QT_TRANSLATE_NOOP("Bridge", "the other end has closed."),
    QT_TRANSLATE_NOOP("Bridge", "Velmora is already running there."),
    QT_TRANSLATE_NOOP(
        "Bridge",
        "Put it into claude_desktop_config.json (Settings, Developer, Edit Config) and restart Claude Desktop."),
    QT_TRANSLATE_NOOP(
        "Bridge",
        "Run it once in a shell: it connects all your projects. For one project only, put what `velmora config cursor` prints into the project's .mcp.json."),
    QT_TRANSLATE_NOOP("Bridge", "Put it into ~/.cursor/mcp.json, or into .cursor/mcp.json of one project."),
    QT_TRANSLATE_NOOP(
        "Bridge",
        "Put it into your mcp.json (command palette: MCP: Open User Configuration), or into .vscode/mcp.json of one project."),
    QT_TRANSLATE_NOOP("Bridge", "Add it at the end of ~/.codex/config.toml."),
    QT_TRANSLATE_NOOP("Bridge",
                      "Put it into ~/.gemini/settings.json, or into .gemini/settings.json of one project."),
    QT_TRANSLATE_NOOP("Bridge", "Put it into settings.json (command palette: zed: open settings file)."),
    QT_TRANSLATE_NOOP("Bridge",
                      "Put it into ~/.config/opencode/opencode.json, or into opencode.json of one project."),
    QT_TRANSLATE_NOOP("Bridge", "Put it into ~/.openclaw/openclaw.json."),
};

}  // namespace

QString bridgeText(std::string_view english) {
  auto translated = QCoreApplication::translate("Bridge", std::string(english).c_str());
  const auto end = english.find(". ");
  if (end == std::string_view::npos || translated != text(std::string(english))) return translated;
  return bridgeText(english.substr(0, end + 1)) + " " + bridgeText(english.substr(end + 2));
}

QString problemText(const StructuredError& error) {
  return bridgeText(error.message) + " " + bridgeText(error.recoverySuggestion);
}

}  // namespace velmora
