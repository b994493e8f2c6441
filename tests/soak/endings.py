"""The bridge is asked to end while calls are under way: they are answered, and what stays on disk is what was set."""

import os
import random
import signal
import time

from clients import Gone, NoAnswer, counted, outcome
from laboratory import KEPT_HISTORY, Laboratory

SIGNALS = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)


class Ending:
    """One run of the bridge, ended by a signal with a call under way in every pane."""

    def __init__(self, laboratory, panes, number, hung):
        bridge = laboratory.start_bridge()
        ids = [laboratory.idle_session(pane) for pane in panes]
        laboratory.ledger.write_text("")
        server = laboratory.tmux_server()
        clients = [laboratory.client(seconds=8) for _ in panes]
        if hung:
            os.kill(server, signal.SIGSTOP)
        for entry, (client, id, pane) in enumerate(zip(clients, ids, panes)):
            client.send("terminal_send_command", sessionId=id, command=laboratory.entry(entry, pane))
        # In a tmux that hangs they are under way for certain, else at a moment of their own.
        time.sleep(0.5 if hung else random.uniform(0.004, 0.03))
        bridge.send_signal(number)
        self.answers, self.silent = [], []
        for entry, client in enumerate(clients):
            try:
                self.answers.append(outcome(client.answer()))
            except (Gone, NoAnswer):
                self.silent.append(entry)
            client.close()
        self.status = laboratory.stop_bridge(number)
        os.kill(server, signal.SIGCONT)
        time.sleep(1 if hung else 0.3)
        self.runs = laboratory.runs()
        self.socket_left = laboratory.socket.exists()


def wrong_records(laboratory, ending, panes, keep):
    """What is in the history and should not be, or the other way round."""
    if not keep:
        return ["still there"] if (laboratory.data / "history.json").exists() else []
    records = laboratory.history()
    kept = "".join(record.get("commandBody", "") for record in records)
    (laboratory.data / "history.json").unlink(missing_ok=True)
    return (["a command that ran is missing" for entry, pane in enumerate(panes)
             if ending.runs[entry] and f"echo {entry} {pane} " not in kept] +
            [record["status"] for record in records if record["status"] in ("received", "processing")])


def try_signal(report, number, keep, seconds):
    words = f"{number.name} with calls under way, history {'kept' if keep else 'to be deleted'}"
    wrong, endings, end = [], [], time.monotonic() + seconds
    with Laboratory(**KEPT_HISTORY | {"deleteOnAppExit": not keep}) as laboratory:
        panes = [laboratory.new_pane() for _ in range(4)]
        hung = Ending(laboratory, panes, number, hung=True)
        wrong += wrong_records(laboratory, hung, panes, keep)
        while len(endings) < 3 or (time.monotonic() < end and len(endings) < 50):
            endings.append(Ending(laboratory, panes, number, hung=False))
            wrong += wrong_records(laboratory, endings[-1], panes, keep)
    late = sum(hung.runs.values())
    report.check(f"{words}, tmux hangs: every call is answered, and nothing is typed later", not hung.silent and not late,
                 f"{counted(hung.answers)}; {len(hung.silent)} unanswered, {late} typed later")
    silent = sum(len(ending.silent) for ending in endings)
    ran = sum(ending.runs[entry] for ending in endings for entry in ending.silent)
    answers = [answer for ending in endings for answer in ending.answers]
    report.check(f"{words}: whatever ran was answered", not ran,
                 f"{len(endings)} ends; {counted(answers)}; {silent} unanswered, of which {ran} ran")
    report.check(f"{words}: the history is as set", not wrong, counted(wrong) if wrong else "")
    endings.append(hung)
    statuses, left = [ending.status for ending in endings], sum(ending.socket_left for ending in endings)
    report.check(f"{words}: it ends well and its socket is gone", not left and not any(statuses),
                 f"exit status: {counted(statuses)}; {left} sockets left")


def run(seconds, report):
    for number in SIGNALS:
        for keep in (False, True):
            try_signal(report, number, keep, seconds / 6 - 4)
