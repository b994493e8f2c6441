"""The application's display goes away (the X server ends) while calls are under way."""

import shutil
import signal
import subprocess
import time

from clients import Gone, NoAnswer, counted, eventually, outcome
from laboratory import KEPT_HISTORY, PROGRAMS, Laboratory

WORDS = "the application's display is lost with calls under way"


def start_display(laboratory):
    display = laboratory.launch("/usr/bin/Xvfb", "-displayfd", "1", "-screen", "0", "800x600x24", "-nolisten", "tcp",
                                stdout=subprocess.PIPE)
    laboratory.environment |= {"DISPLAY": f":{int(display.stdout.readline())}", "QT_QPA_PLATFORM": "xcb",
                               "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent",
                               "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent"}
    return display


def lose_display(report, keep):
    words = f"{WORDS}, history {'kept' if keep else 'to be deleted'}"
    with Laboratory(**KEPT_HISTORY | {"deleteOnAppExit": not keep}) as laboratory:
        defaults = laboratory.root / "config/Velmora/Velmora.conf"
        defaults.parent.mkdir(parents=True)
        defaults.write_text("[General]\nonboardingCompleted=true\n")
        panes = [laboratory.new_pane() for _ in range(4)]
        display = start_display(laboratory)
        laboratory.bridge = laboratory.launch("velmora-app")
        if not eventually(laboratory.answers, 20, every=0.3):
            raise RuntimeError(f"the application did not start: {laboratory.said()[-300:]}")
        ids = [laboratory.idle_session(pane) for pane in panes]
        time.sleep(1)  # its own first calls
        clients = [laboratory.client(seconds=8) for _ in panes]
        for number, (client, id, pane) in enumerate(zip(clients, ids, panes)):
            client.send("terminal_send_command", sessionId=id, command=laboratory.entry(number, pane))
        time.sleep(0.01)
        display.send_signal(signal.SIGKILL)
        answers = []
        for client in clients:
            try:
                answers.append(outcome(client.answer()))
            except (Gone, NoAnswer):
                answers.append("unanswered")
        ended = eventually(lambda: laboratory.bridge.poll() is not None, 8)
        report.check(f"{words}: the application ends and every call is answered", ended and "unanswered" not in answers,
                     f"{counted(answers)}; it {'ended' if ended else 'lives on'}")
        history = (laboratory.data / "history.json").exists()
        report.check(f"{words}: the history is as set", history == keep, "it is there" if history else "it is gone")
        left = [path.name for path in laboratory.runtime.rglob("*") if path.is_socket()]
        report.check(f"{words}: the sockets are gone", not left, ", ".join(left))


def run(seconds, report):
    if not shutil.which("Xvfb") or not (PROGRAMS / "velmora-app").exists():
        report.note(f"{WORDS}: not tried, because Xvfb or velmora-app is missing")
        return
    for keep in (False, True):
        lose_display(report, keep)
