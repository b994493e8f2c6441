"""The whole application as a user has it: the real program in a real window, a real tmux server, and a client that
calls through the helper meanwhile. Run it under a display and a session bus of its own:
xvfb-run -a dbus-run-session -- /usr/bin/python3 app_test.py FOLDER_OF_THE_PROGRAMS"""

import json
import os
import pathlib
import signal
import sys

import pyatspi

from accessible_window import AccessibleWindow, eventually
from desktop import check, play
from helper_client import HelperClient
from status_notifier_host import StatusNotifierHost

programs = pathlib.Path(sys.argv[1])


def calls_arrive_while_the_window_is_open(desktop, window, client):
    session = client.call("terminal_list_sessions")["data"]["sessions"][0]["sessionId"]
    check("a client sends a command", client.code("terminal_send_command", sessionId=session, command="echo $((40+2))") == "ok")
    check("it reaches the pane", eventually(lambda: "\n42" in desktop.tmux("capture-pane", "-p"), "42 in the pane"))
    check(
        "its record appears in the window",
        eventually(lambda: any("terminal_send_command" in name for name in window.names("list item")), "a record"),
    )
    says = lambda start, part: any(name.startswith(start) and part in name for name in window.names("label"))
    check("the dashboard says who did what", eventually(lambda: says("Last: ", " sent a command to "), "the last deed"))
    check("and who is connected", eventually(lambda: says("", " in the last 10 minutes, "), "a connected client"))
    return session


def pausing_holds_at_once(desktop, window, client, tray, session):
    check("the tray counts the client", eventually(lambda: "Clients: 1" in tray.labels(), "one client"))
    icon = tray.property("IconPixmap")
    window.press("push button", "Pause MCP changes")
    window.see("label", "Bridge: Paused")
    sent = client.code("terminal_send_command", sessionId=session, command="echo never")
    check("paused in the window, a command is refused", sent == "MCP_PAUSED")
    check("reading goes on", client.code("terminal_read_output", sessionId=session) == "ok")
    check("the tray says so", "MCP Paused" in tray.labels() and "Resume changes" in tray.labels())
    check("and shows another symbol", tray.property("IconPixmap") != icon)
    expected = "Last error: MCP change operations are paused."
    check("the tray shows the last error", eventually(lambda: expected in tray.labels(), expected))
    tray.click("Resume changes")
    window.see("label", "Bridge: Active")
    sent = client.code("terminal_send_command", sessionId=session, command="echo again")
    check("resumed from the tray, a command is delivered", sent == "ok")
    check("nothing was sent meanwhile", "never" not in desktop.tmux("capture-pane", "-p"))


def permissions_hold(window, client, session):
    window.press("page tab", "Sessions")
    window.press("combo box", "Permission")
    window.press("list item", "blocked")
    eventually(
        lambda: client.code("terminal_send_command", sessionId=session, command="echo no") == "SESSION_NOT_ALLOWED",
        "a blocked session refuses",
    )
    check("a blocked session refuses commands", True)
    refused = client.code("terminal_read_output", sessionId=session)
    check("and reading", refused == "SESSION_NOT_ALLOWED")
    check("it stays listed", len(client.call("terminal_list_sessions")["data"]["sessions"]) == 1)
    window.press("combo box", "Permission")
    window.press("list item", "managed")
    eventually(
        lambda: client.code("terminal_send_command", sessionId=session, command="echo yes") == "ok",
        "a managed session accepts",
    )
    check("a session that is managed again accepts", True)


def a_hung_terminal_leaves_the_window_alone(desktop, window):
    window.press("page tab", "Dashboard")
    os.kill(desktop.tmux_server, signal.SIGSTOP)
    try:
        window.press("push button", "Refresh")
        window.press("push button", "Pause MCP changes")
        window.see("label", "Bridge: Paused")
        window.press("push button", "Resume MCP changes")
        window.see("label", "Bridge: Active")
        # What was asked of tmux gives up after five seconds.
        check("the window answers while it still waits for tmux", not window.shows("label", "Status: unavailable"))
        window.see("label", "Status: unavailable")
        check("and says that the terminal is unavailable", True)
    finally:
        os.kill(desktop.tmux_server, signal.SIGCONT)
    window.see("label", "Status: available")


def the_history_is_searched_and_cleared(window):
    window.press("page tab", "History")
    window.press("push button", "Clear")
    window.see("heading", "Delete Velmora history?")
    window.press("push button", "Delete History")
    window.see("label", "No requests yet")
    check("the history is cleared after a confirmation", True)


def keys_reach_the_sections(desktop, window):
    for key, title in (("ctrl+comma", "Settings"), ("ctrl+3", "Request History"), ("ctrl+1", "Dashboard")):
        desktop.type("key", key)
        window.see("heading", title)
    check("keys show the sections", True)
    desktop.type("key", "ctrl+f")
    search = window.see("text", "Search history")
    check("and the search", eventually(lambda: search.getState().contains(pyatspi.STATE_FOCUSED), "the search has the keyboard"))


def the_switch_hides_and_shows_the_tray(window, tray):
    window.press("page tab", "Settings")
    window.act("check box", "Show Velmora in the tray", "Toggle")
    eventually(lambda: not tray.answers(), "the status item is gone")
    check("switched off, the tray's entry goes at once", True)
    window.act("check box", "Show Velmora in the tray", "Toggle")
    check("switched on, it comes back", eventually(tray.answers, "the status item is back"))


def closing_hides_and_a_second_start_brings_back(desktop, app, window, client, tray):
    desktop.close_window()
    eventually(lambda: not desktop.window_is_visible(), "the window is hidden")
    check("closed into the tray, the bridge goes on", client.code("terminal_status") == "ok" and app.poll() is None)
    tray.click("Open Velmora")
    check("the tray opens the window", eventually(desktop.window_is_visible, "the window is back"))
    desktop.close_window()
    eventually(lambda: not desktop.window_is_visible(), "the window is hidden")
    second = desktop.start()
    check("a second start ends at once", second.wait(10) == 0)
    check("and brings the first one's window back", eventually(desktop.window_is_visible, "the window is back"))


def with_a_tray(desktop):
    tray = StatusNotifierHost()
    app = desktop.start()
    window = AccessibleWindow("Velmora")
    eventually(tray.has_item, "the status item is there")
    labels = ["MCP Active", "Clients: 0", "Managed sessions: 1", "Pause changes", "Open Velmora", "Open Permission Settings"]
    check("the tray has its entries", eventually(lambda: tray.labels() == labels, labels))
    check("no permission is needed here", tray.entries()[-1][2] == ["tmux needs no permission"])
    client = HelperClient(programs / "velmora", desktop.environment)
    session = calls_arrive_while_the_window_is_open(desktop, window, client)
    pausing_holds_at_once(desktop, window, client, tray, session)
    permissions_hold(window, client, session)
    a_hung_terminal_leaves_the_window_alone(desktop, window)
    keys_reach_the_sections(desktop, window)
    the_history_is_searched_and_cleared(window)
    the_switch_hides_and_shows_the_tray(window, tray)
    closing_hides_and_a_second_start_brings_back(desktop, app, window, client, tray)
    app.send_signal(signal.SIGTERM)
    check("a termination ends it well", app.wait(10) == 0)
    check("and its socket with it", not pathlib.Path(desktop.home, "app.velmora.Velmora/control-v1.sock").exists())
    client.close()


def move_the_login_item(desktop):
    """Leaves an entry as an earlier copy of the program wrote it, with a key that the user added."""
    entry = pathlib.Path(desktop.home, "config/autostart/app.velmora.Velmora.desktop")
    entry.parent.mkdir(parents=True, exist_ok=True)
    lines = ["[Desktop Entry]", "Type=Application", "Name=Velmora", "Exec=/gone/velmora-app", "X-Own=kept", ""]
    entry.write_text("\n".join(lines))
    return entry


def without_a_tray(desktop):
    entry = move_the_login_item(desktop)
    desktop.settings.parent.mkdir(parents=True, exist_ok=True)
    desktop.settings.write_text(json.dumps({"schemaVersion": 1, "settings": {"persistentHistoryEnabled": True}}))
    app = desktop.start()
    window = AccessibleWindow("Velmora")
    check("the login item follows the program", f"Exec={programs / 'velmora-app'}\n" in entry.read_text())
    check("and keeps what the user added", "X-Own=kept\n" in entry.read_text())
    client = HelperClient(programs / "velmora", desktop.environment)
    session = client.call("terminal_list_sessions")["data"]["sessions"][0]["sessionId"]
    client.call("terminal_send_command", sessionId=session, command="echo kept")
    history = desktop.settings.with_name("history.json")
    check("the history is kept on disk when asked for", eventually(history.exists, "history.json"))
    eventually(desktop.window_is_visible, "the window is there")
    desktop.close_window()
    window.see("heading", "Close Velmora?")
    check("without a tray, closing says that it quits", app.poll() is None)
    window.press("push button", "Cancel")
    eventually(lambda: not window.shows("heading", "Close Velmora?"), "the question is gone")
    check("cancelled, it goes on", client.code("terminal_status") == "ok")
    window.press("push button", "Quit Velmora")
    check("quitting from the window ends it well", app.wait(10) == 0)
    check("and deletes the history, as the settings say", not history.exists())
    client.close()


if __name__ == "__main__":
    play(programs, [without_a_tray, with_a_tray], introduced=True)
