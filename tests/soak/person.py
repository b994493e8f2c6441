"""A person and an agent at one prompt: no line is ever made of both."""

import random
import threading
import time

from clients import Person, counted, eventually, outcome, sentence
from laboratory import Laboratory

SENDS = 500
SHELLS = ("/bin/bash", "/usr/bin/zsh", "/usr/bin/fish")


def half_typed(report, shell):
    """What stands at the prompt when the agent sends, however it came there."""
    name = shell.rsplit("/", 1)[1]
    # A quote and a heredoc are continued on the next line; Escape and Control-V wait for one more key, which only bash
    # lets anybody know.
    beginnings = [("half a line", lambda lab, pane: lab.types(pane, f"echo half >> {lab.ledger}.half; echo ")),
                  ("an open quote", lambda lab, pane: (lab.types(pane, f"echo 'half >> {lab.ledger}.half"),
                                                       lab.keys(pane, "Enter"))),
                  ("a quoted key (Control-V)", lambda lab, pane: lab.keys(pane, "C-v"))]
    for words, begin in beginnings if name == "bash" else beginnings[:2]:
        with Laboratory(shell=shell) as laboratory:
            pane = laboratory.new_pane()
            laboratory.start_bridge()
            id = laboratory.idle_session(pane)
            time.sleep(0.3)
            begin(laboratory, pane)
            time.sleep(0.3)
            answer = laboratory.call("terminal_send_command", sessionId=id, command=laboratory.entry(1, pane))
            time.sleep(0.5)
            whole = not answer["ok"] or laboratory.runs()[1] == 1
            joined = (laboratory.root / "ledger.half").exists() or not whole
            report.check(f"{words} stands at the prompt of {name}: nothing is joined to it", not joined,
                         f"{outcome(answer)} {sentence(answer)[:100]}".strip() if not joined
                         else f"{outcome(answer)}; screen: {laboratory.screen(pane).split()[-12:]}")


class Typist:
    """Types lines of their own with pauses, mistakes and half-typed lines, at a second terminal."""

    def __init__(self, laboratory, pane):
        self.lines = set()
        self._person = Person(laboratory, pane)
        self._chance = random.Random()
        self._end = threading.Event()
        self._thread = threading.Thread(target=self._type)
        self._thread.start()

    def finish(self):
        self._end.set()
        self._thread.join()
        self._person.leave()

    def _type(self):
        number = 0
        while not self._end.is_set():
            number += 1
            line = f": person {number} " + "x" * self._chance.randrange(20)
            self.lines.add(line.strip())
            for character in line.strip():
                if self._chance.random() < 0.05:
                    self._person.type("q")
                    self._pause(0.2)
                    self._person.type("\x7f")
                self._person.type(character)
                self._pause(0.02 if self._chance.random() < 0.95 else 1)
            self._pause(self._chance.choice((0, 0.1, 2)))
            self._person.type("\r")
            self._pause(self._chance.choice((0.1, 0.5, 3, 12)))

    def _pause(self, longest):
        self._end.wait(self._chance.uniform(0, longest))


def typing_meanwhile(report, seconds):
    """bash writes down every line that it runs."""
    with Laboratory() as laboratory:
        lines = laboratory.root / "lines"
        (laboratory.home / ".bash_profile").write_text(
            f"PS1='$ '\nHISTFILE={lines}\nHISTCONTROL=\nPROMPT_COMMAND='history -a'\n")
        pane = laboratory.new_pane()
        laboratory.start_bridge()
        id = laboratory.idle_session(pane)
        typist = Typist(laboratory, pane)
        client = laboratory.client()
        chance = random.Random()
        mine, outcomes = set(), []
        end = time.monotonic() + seconds
        while len(outcomes) < SENDS and time.monotonic() < end:
            line = f": agent {len(outcomes)}"
            answer = client.call("terminal_send_command", sessionId=id, command=line)
            outcomes.append(outcome(answer))
            if answer["ok"]:
                mine.add(line)
            time.sleep(chance.uniform(0, 0.25))
        typist.finish()
        client.close()
        time.sleep(0.3)
        laboratory.keys(pane, "C-c")
        ran = [line.strip() for line in lines.read_text().splitlines()] if lines.exists() else []
        mixed = [line for line in ran if line not in mine and line not in typist.lines]
        twice = [line for line in mine if ran.count(line) > 1]
        report.check("a person types while an agent sends: no line is made of both", not mixed,
                     f"{mixed[:2]} and {max(0, len(mixed) - 2)} more of {len(outcomes)} sends" if mixed
                     else f"{len(outcomes)} sends: {counted(outcomes)}; {len(ran)} lines ran")
        missing = [line for line in mine if line not in ran]
        report.check("a person types while an agent sends: what is called delivered ran once", not twice and not missing,
                     f"{len(missing)} missing, {len(twice)} twice" if twice or missing else f"{len(mine)} delivered")


def after_the_person(report):
    """Once the line is gone and the person rests, the agent is let in again."""
    with Laboratory() as laboratory:
        pane = laboratory.new_pane()
        laboratory.start_bridge()
        id = laboratory.idle_session(pane)
        person = Person(laboratory, pane)
        person.type("echo half")
        time.sleep(0.3)
        during = laboratory.call("terminal_send_command", sessionId=id, command=laboratory.entry(1, pane))
        person.type("\x15")
        begun = time.monotonic()
        let_in = eventually(lambda: laboratory.call("terminal_send_command", sessionId=id,
                                                    command=laboratory.entry(2, pane))["ok"], 20, every=0.5)
        waited = time.monotonic() - begun
        person.leave()
        report.check("someone is typing: the agent is refused and told why",
                     not during["ok"] and "typ" in sentence(during), outcome(during) + " " + sentence(during)[:120])
        report.check("the line is erased and the person rests: the agent is let in", let_in and laboratory.runs()[2] == 1,
                     f"after {waited:.0f} s")


def run(seconds, report):
    begun = time.monotonic()
    for shell in SHELLS:
        half_typed(report, shell)
    after_the_person(report)
    typing_meanwhile(report, max(10, seconds - (time.monotonic() - begun) - 3))
