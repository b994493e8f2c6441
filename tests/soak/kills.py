"""kill -9 of bridge, helper and tmux at random moments: no command runs twice or in another pane, and files stay whole.

The client is an obedient one: what it is told to retry it sends again.
"""

import json
import os
import random
import signal
import time

from clients import Gone, eventually, outcome
from laboratory import KEPT_HISTORY, Laboratory

KILLS = 200


class Room:
    """A laboratory whose parts are started anew when they are gone."""

    def __init__(self, laboratory):
        self.laboratory = laboratory
        self.helper = None
        self.panes = []

    def furnish(self):
        laboratory = self.laboratory
        if laboratory.bridge is None or laboratory.bridge.poll() is not None:
            laboratory.start_bridge()
        if self.helper is None or self.helper.process.poll() is not None:
            self.helper = laboratory.helper()
        if not self.panes or not laboratory.tmux("list-panes", "-a", check=False):
            if not eventually(self._new_panes):
                raise RuntimeError("tmux does not start again")

    def _new_panes(self):
        try:
            self.panes = [self.laboratory.new_pane() for _ in range(2)]
        except RuntimeError:  # the socket of the server that was killed is being given up
            self.panes = []
        return self.panes

    def victim(self, name):
        return {"bridge": lambda: self.laboratory.bridge.pid, "helper": lambda: self.helper.process.pid,
                "tmux": self.laboratory.tmux_server}[name]()

    def wait_for_end(self, name):
        if name == "tmux":
            eventually(lambda: not self.laboratory.tmux_server())
        else:
            (self.laboratory.bridge if name == "bridge" else self.helper.process).wait()


def whole(laboratory):
    """Whether every file of the data folder can be read."""
    try:
        for name in ("history.json", "settings.json"):
            file = laboratory.data / name
            if file.exists():
                json.loads(file.read_text())
        return True
    except ValueError:
        return False


def run(seconds, report):
    chance = random.Random()
    end = time.monotonic() + seconds - 3
    kills, told, retried, broken, left_buffers, misled = {"bridge": 0, "helper": 0, "tmux": 0}, {}, 0, 0, 0, 0
    with Laboratory(**KEPT_HISTORY) as laboratory:
        room = Room(laboratory)
        number = 0
        while sum(kills.values()) < KILLS and (time.monotonic() < end or sum(kills.values()) < 6):
            room.furnish()
            for pane in room.panes:
                id = laboratory.idle_session(pane)
                number += 1
                name = chance.choice(("bridge", "bridge", "helper", "tmux"))
                victim = room.victim(name)
                call = room.helper.begin("terminal_send_command", sessionId=id, command=laboratory.entry(number, pane))
                time.sleep(chance.uniform(0, 0.025))
                os.kill(victim, signal.SIGKILL)
                kills[name] += 1
                room.wait_for_end(name)
                try:
                    answer = room.helper.answer(call)
                except Gone:
                    answer = None  # the client knows nothing and repeats nothing
                if answer:
                    told[number] = outcome(answer)
                broken += not whole(laboratory)
                if name == "tmux":
                    room.panes = []
                room.furnish()
                if name == "bridge" and "velmora-" in laboratory.tmux("list-buffers", check=False):
                    left_buffers += 1
                if answer and outcome(answer).endswith("/retryable"):
                    misled += number in laboratory.runs()
                    pane = room.panes[0]
                    retried += 1
                    room.helper.call("terminal_send_command", sessionId=laboratory.idle_session(pane),
                                     command=laboratory.entry(number, pane))
                if name == "tmux":
                    break  # the other pane has gone with the server
        time.sleep(0.5)
        runs = laboratory.runs()
        twice = [number for number, times in runs.items() if times > 1]
        elsewhere = [entry for entry in laboratory.entries() if entry[1] != entry[2]] + laboratory.odd_lines()
        lost = [number for number, words in told.items() if words == "ok" and runs[number] == 0]
        figures = (f"{kills['bridge']} times the bridge, {kills['helper']} the helper, {kills['tmux']} tmux; "
                   f"{len(runs)} of {number} commands ran, {retried} sent again as told")
        report.check("kill -9 at random moments: no command runs twice", not twice, f"twice: {twice}" if twice else figures)
        report.check("kill -9: nothing that ran is called retryable", not misled, f"{misled} times" if misled else "")
        report.check("kill -9: no command runs in another pane", not elsewhere, f"{elsewhere[:3]}" if elsewhere else "")
        # Killed with its shells, tmux takes along what it had accepted.
        report.check("kill -9: what is called delivered was not lost unless tmux died", len(lost) <= kills["tmux"],
                     f"{len(lost)} delivered and lost, tmux died {kills['tmux']} times")
        report.check("kill -9: files are whole", not broken, f"{broken} times not" if broken else "")
        report.check("kill -9 of the bridge: no text is left in a tmux buffer after the next start", not left_buffers,
                     f"{left_buffers} times" if left_buffers else "")
