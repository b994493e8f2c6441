"""Many calls at once: every one is answered well."""

import subprocess
import time
from concurrent.futures import ThreadPoolExecutor

from clients import counted, outcome, sentence
from laboratory import PROGRAMS, Laboratory


def seen_of(answers):
    return counted(outcome(answer) + (": " + sentence(answer)[:60] if not answer["ok"] else "") for answer in answers)


def run(seconds, report):
    with Laboratory() as laboratory:
        panes = [laboratory.new_pane() for _ in range(4)]
        laboratory.start_bridge()
        ids = [laboratory.idle_session(pane) for pane in panes]

        begun = time.monotonic()
        helper = laboratory.helper()
        answers = [helper.answer(id) for id in helper.begin_all([("terminal_list_sessions", {})] * 300)]
        report.check("300 calls written at once through one helper are all answered well",
                     all(answer["ok"] for answer in answers),
                     f"{seen_of(answers)}; {time.monotonic() - begun:.1f} s")
        helper.close()

        def forty(number):
            helper = laboratory.helper()
            session = {"sessionId": ids[number % 4]}
            tools = [("terminal_status", {}), ("terminal_list_sessions", {}), ("terminal_read_output", session)]
            answers = [helper.answer(id) for id in helper.begin_all([tools[call % 3] for call in range(40)])]
            helper.close()
            return answers

        begun = time.monotonic()
        with ThreadPoolExecutor(8) as helpers:
            answers = [answer for part in helpers.map(forty, range(8)) for answer in part]
        report.check("8 helpers with 40 calls each at once are all answered well",
                     len(answers) == 320 and all(answer["ok"] for answer in answers),
                     f"{seen_of(answers)}; {time.monotonic() - begun:.1f} s")

        calls = [subprocess.Popen([PROGRAMS / "velmora", "call", "terminal_status"], env=laboratory.environment,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) for _ in range(40)]
        statuses = [call.wait(60) for call in calls]
        report.check("40 times `velmora call` at once succeed", not any(statuses), f"exit status: {counted(statuses)}")
