"""tmux is stopped while calls are under way: every answer comes in time and is true, and nothing is typed later."""

import os
import re
import signal
import subprocess
import time

from clients import Gone, NoAnswer, counted, eventually, outcome, sentence
from laboratory import Laboratory

PROMPT = 6.5
NEVER_BEGUN_IS_KNOWN = re.compile(r"unknown|may have", re.IGNORECASE)


def sixteen_callers(report):
    with Laboratory() as laboratory:
        panes = [laboratory.new_pane() for _ in range(8)]
        laboratory.start_bridge()
        ids = [laboratory.idle_session(pane) for pane in panes]
        helper = laboratory.helper()
        helper.call("terminal_status")
        sends = [("terminal_send_command", {"sessionId": id, "command": laboratory.entry(number, pane)})
                 for number, (id, pane) in enumerate(zip(ids, panes))]
        others = [("terminal_list_sessions", {})] * 3 + [
            ("terminal_status", {}), ("terminal_create_session", {"kind": "window"}),
            ("terminal_send_key", {"sessionId": ids[0], "key": "return"}),
            ("terminal_read_output", {"sessionId": ids[1]}), ("terminal_focus_session", {"sessionId": ids[2]})]
        server = laboratory.tmux_server()
        os.kill(server, signal.SIGSTOP)
        begun = time.monotonic()
        calls = helper.begin_all(sends + others)
        answers, times, missing = [], [], 0
        for call in calls:
            try:
                answer, when = helper.answer_and_time(call, max(0.1, 15 - (time.monotonic() - begun)))
                answers.append(answer)
                times.append(when - begun)
            except (NoAnswer, Gone):
                missing += 1
        os.kill(server, signal.SIGCONT)
        late = sum(seconds > PROMPT for seconds in times) + missing
        report.check(f"tmux stopped under 16 callers: every answer within {PROMPT} s", not late,
                     f"slowest {max(times, default=0):.1f} s; {late} late, {missing} of them after 15 s or never")
        doubtful = [sentence(answer) for answer in answers if NEVER_BEGUN_IS_KNOWN.search(sentence(answer))]
        report.check("tmux stopped: nothing that was never begun is called unknown", not doubtful and not missing,
                     f"{missing} without an answer; {counted(text[:80] for text in doubtful)}" if doubtful or missing
                     else counted(map(outcome, answers)))
        begun = time.monotonic()
        answer = helper.call("terminal_send_command", sessionId=ids[7], command=laboratory.entry(100, panes[7]))
        report.check("tmux continued: the next call works", answer["ok"],
                     f"{outcome(answer)} after {time.monotonic() - begun:.1f} s")
        time.sleep(3)
        typed = sorted(number for number in laboratory.runs() if number != 100)
        report.check("tmux continued: nothing is typed later", not typed, f"ran later: {typed}" if typed else "")
        count = len(laboratory.tmux("list-panes", "-a").splitlines())
        report.check("tmux continued: no window is made later", count == 8, f"{count} panes")


def client_gives_up(report):
    """What a client no longer waits for is not typed, whoever was stopped meanwhile."""
    with Laboratory() as laboratory:
        pane = laboratory.new_pane()
        bridge = laboratory.start_bridge()
        id = laboratory.idle_session(pane)
        client = laboratory.client()
        os.kill(bridge.pid, signal.SIGSTOP)
        client.send("terminal_send_command", sessionId=id, command=laboratory.entry(1, pane))
        time.sleep(0.5)
        client.close()
        os.kill(bridge.pid, signal.SIGCONT)
        time.sleep(1)
        report.check("the bridge was stopped and the client has gone: nothing is typed", not laboratory.runs(),
                     "it ran after its client had gone" if laboratory.runs() else "")

        laboratory.ledger.write_text("")
        server = laboratory.tmux_server()
        helper = laboratory.helper()
        os.kill(server, signal.SIGSTOP)
        helper.begin("terminal_send_command", sessionId=id, command=laboratory.entry(2, pane))
        time.sleep(0.5)
        helper.process.stdin.close()
        try:
            helper.process.wait(2)
        except subprocess.TimeoutExpired:
            helper.process.kill()
        time.sleep(0.5)
        os.kill(server, signal.SIGCONT)
        eventually(laboratory.runs, 2)
        report.check("tmux was stopped and the helper has ended: nothing is typed", not laboratory.runs(),
                     "it ran after the helper had ended" if laboratory.runs() else "")


def run(seconds, report):
    sixteen_callers(report)
    client_gives_up(report)
