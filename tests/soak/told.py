"""What a caller is told about sessions and failures is what is so."""

import os
import signal
import time

from clients import eventually, outcome, sentence
from laboratory import Laboratory


def failing_listing(report):
    with Laboratory() as laboratory:
        pane = laboratory.new_pane()
        laboratory.start_bridge()
        id = laboratory.idle_session(pane)
        server = laboratory.tmux_server()
        os.kill(server, signal.SIGSTOP)
        answer = laboratory.call("terminal_send_command", sessionId=id, command="true")
        texts = {sentence(laboratory.call("terminal_list_sessions")) for _ in range(2)}
        os.kill(server, signal.SIGCONT)
        error = answer["error"]
        report.check("a failure names the tool and the session that were called",
                     error["operation"] == "terminal_send_command" and error.get("session", {}).get("sessionId") == id,
                     f"{error['operation']}, {error.get('session')}")
        report.check("a hung tmux is described the same way each time", len(texts) == 1, " | ".join(texts)[:200])


def restarted_tmux(report):
    with Laboratory() as laboratory:
        laboratory.start_bridge()
        counted, listed = [], []
        for _ in range(3):
            laboratory.idle_session(laboratory.new_pane())
            os.kill(laboratory.tmux_server(), signal.SIGKILL)
            eventually(lambda: not laboratory.tmux_server())
            laboratory.call("terminal_list_sessions")
            counted.append(laboratory.call("terminal_status")["data"]["status"]["sessionCount"])
            eventually(lambda: laboratory.tmux("new-session", "-d", "-P", check=False))
            listed.append(len(laboratory.sessions()))
            os.kill(laboratory.tmux_server(), signal.SIGKILL)
            eventually(lambda: not laboratory.tmux_server())
        report.check("tmux has ended and was looked for: no session is counted", not any(counted), f"counted: {counted}")
        report.check("tmux was started again: the first listing shows it", listed == [1, 1, 1], f"listed: {listed}")


def focus_without_terminal(report):
    with Laboratory() as laboratory:
        panes = [laboratory.new_pane() for _ in range(3)]
        laboratory.start_bridge()
        id = laboratory.idle_session(panes[0])
        time.sleep(1.1)  # tmux counts activity in seconds
        laboratory.keys(panes[2], "Enter")
        laboratory.call("terminal_focus_session", sessionId=id)
        active = laboratory.call("terminal_get_active_session")
        same = active["ok"] and active["data"]["session"]["sessionId"] == id
        report.check("what was focused is the active session", same, outcome(active))


def own_windows(report):
    with Laboratory(sessionPolicy="selective", deleteOnAppExit=False) as laboratory:
        laboratory.new_pane()
        laboratory.start_bridge()
        made = laboratory.call("terminal_create_session", kind="window")
        names = laboratory.tmux("list-sessions", "-F", "#{session_name}").split()
        report.check("a window that the bridge opens is named after it", any("velmora" in name for name in names),
                     f"{names}")
        laboratory.stop_bridge()
        laboratory.start_bridge()
        tty = made["data"]["session"]["tty"]
        again = next(session for session in laboratory.sessions() if session["tty"] == tty)
        report.check("after a restart of the bridge agents may type into the windows that it opened",
                     again["permission"] == "managed", again["permission"])


def run(seconds, report):
    for scene in (failing_listing, restarted_tmux, focus_without_terminal, own_windows):
        scene(report)
