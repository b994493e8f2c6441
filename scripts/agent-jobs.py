#!/usr/bin/env python3
"""Plays six jobs of an agent against the real programs, once with the plain form of the tools and once with the extended
one, and compares what they cost: calls, and characters of answers that a model has to read.

    scripts/agent-jobs.py [FOLDER OF THE PROGRAMS]        build/dev/bin

Everything runs in a temporary folder, with a home, data and a tmux server of its own, and without the network. Both forms
have the same settings (the user allows input to busy sessions) and come to the same end, which is checked. In both the
agent sees what came of each step before it takes the next, and does so with as few calls as its form allows: the plain one
sends and then reads, once, since a model takes longer to answer than a quick command; for a slow one it asks for `busy`,
the shortest answer, as often as agents did. What a model thinks and what the user types is not counted, nor is the list
of tools, which has lines of its own.

The goal, at most half the calls and half the characters, is printed as OK or MISS for every job, against the plain form
as it is today and against what agents were recorded to need before, in the plain form of that time. A job that does not
come to its end fails, and so does a goal that is no longer met; one that never was is a MISS and counts for nothing.
What was recorded had the default settings, so the user had to be asked first in two jobs; the installer's ended where the
password was asked for, and is compared as far as that.
"""

import collections
import concurrent.futures
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

DEADLINE_SECONDS = 30
JOBS_AT_ONCE = 3

CALC = """#include <stdio.h>
int add(int a, int b) { return a - b; }
int main(void) {
  int sum = add(2, 3)
  printf("%d\\n", sums);
  return sum != 5;
}
"""
# Four seconds instead of the thirty that were recorded; it is looked at as often.
SUITE = """#!/bin/bash
for i in $(seq 40); do
  printf 'test %02d of 40: parser reads a document of kind %d ... ok\\n' $i $((i * 7))
  sleep 0.1
done
echo '39 passed, 1 failed'
exit 3
"""
INSTALLER = """#!/bin/bash
echo 'This installs the document tools into ~/tools.'
read -r -p 'Continue? [Y/n] ' answer
[ "$answer" = Y ] || exit 1
read -r -s -n 1 -p 'Press any key to unpack. '; echo
while true; do
  printf '1) small\\n2) usual\\n3) full\\n'
  read -r -n 1 -p 'Which one? ' choice; echo
  case $choice in [123]) break ;; esac
done
while true; do
  read -r -s -p 'Password: ' word; echo
  [ "$word" = right ] && break
  echo 'Sorry, try again.'
done
echo "Installed kind $choice"
"""


class WrongTurn(Exception):
    """A call that failed, or did not bring what it was for."""


class Place:
    """A home, a tmux server and a bridge."""

    def __init__(self, programs):
        self.programs = programs
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="velmora-jobs-", dir="/tmp"))
        settings = self.folder / "data" / "Velmora"
        settings.mkdir(parents=True, mode=0o700)
        (settings / "settings.json").write_text(
            json.dumps({"schemaVersion": 1, "settings": {"allowBusySessionInput": True}}))
        (self.folder / ".bash_profile").write_text("PS1='agent@host:\\w\\$ '\n")
        self.work = self.folder / "work"
        self.work.mkdir()
        for name, text in (("calc.c", CALC), ("tests.sh", SUITE), ("install.sh", INSTALLER),
                           ("add.c", "int add(int a, int b) {\n  return a - b;\n}\n")):
            (self.work / name).write_text(text)
            (self.work / name).chmod(0o755)
        self.environment = {
            "HOME": str(self.folder), "PATH": os.environ["PATH"], "SHELL": "/bin/bash", "TERM": "xterm-256color",
            "LANG": "C.UTF-8", "USER": "agent", "XDG_RUNTIME_DIR": str(self.folder),
            "XDG_DATA_HOME": str(self.folder / "data"), "XDG_CONFIG_HOME": str(self.folder / "config"),
            "TMUX_TMPDIR": str(self.folder)}
        self.bridge = subprocess.Popen([programs / "velmora-headless"], env=self.environment, stdout=subprocess.PIPE,
                                       stderr=subprocess.DEVNULL, text=True)
        if not self.bridge.stdout.readline().strip():
            raise SystemExit("agent-jobs: velmora-headless did not start")

    def tmux(self, *arguments):
        socket = self.folder / f"tmux-{os.getuid()}" / "default"
        return subprocess.run(["tmux", "-S", str(socket), *arguments], env=self.environment, check=False,
                              capture_output=True, text=True).stdout

    def close(self):
        self.bridge.terminate()
        self.bridge.wait(DEADLINE_SECONDS)
        self.bridge.stdout.close()
        self.tmux("kill-server")
        shutil.rmtree(self.folder, ignore_errors=True)


class Agent:
    """A client that counts what its calls cost, and remembers what the terminal showed it."""

    def __init__(self, place, extended):
        self.place = place
        environment = {**place.environment, **({"VELMORA_EXTENDED": "1"} if extended else {})}
        self.helper = subprocess.Popen([place.programs / "velmora"], env=environment, stdin=subprocess.PIPE,
                                       stdout=subprocess.PIPE, text=True, encoding="utf-8")
        self.last_id = self.calls = self.characters = 0
        self.seen = ""
        self.spent_where_recorded_ended = None  # the recorded agent went no further
        self.instructions = self.request("initialize", {
            "protocolVersion": "2025-11-25", "capabilities": {},
            "clientInfo": {"name": "agent-jobs", "version": "1"}})["instructions"]

    def request(self, method, params):
        self.last_id += 1
        message = {"jsonrpc": "2.0", "id": self.last_id, "method": method, "params": params}
        self.helper.stdin.write(json.dumps(message) + "\n")
        self.helper.stdin.flush()
        return json.loads(self.helper.stdout.readline())["result"]

    def data(self, tool, counted=True, **arguments):
        result = self.request("tools/call", {"name": "terminal_" + tool, "arguments": arguments})
        if counted:
            self.calls += 1
            self.characters += sum(len(block.get("text", "")) for block in result["content"])
        envelope = result["structuredContent"]
        if not envelope["ok"]:
            raise WrongTurn(f"{tool} {arguments}: {envelope['error']['message']}")
        return envelope["data"]

    def create(self, **window):
        self.session = self.data("create_session", **window)["session"]["sessionId"]

    def send(self, command, **more):
        return self.data("send_command", sessionId=self.session, command=command, **more)

    def key(self, key):
        return self.data("send_key", sessionId=self.session, key=key)

    def read(self, **more):
        text = self.data("read_output", sessionId=self.session, **more)["text"]
        self.seen += text + "\n"
        return text

    def step(self, command, shows="", idle=False):
        """In the plain form: types, and reads when the terminal has come that far."""
        self.send(command)
        self.pause(shows, idle)
        self.read()

    def run(self, command, shows="", state="finished", seconds=30, **more):
        """In the extended form: types and waits; what appeared since comes with it."""
        completion = self.send(command, waitSeconds=seconds, **more)["completion"]
        self.seen += f"{completion['output']}\nrc={completion.get('exitCode')}\n"
        expect(completion["state"] == state and shows in completion["output"], f"{shows!r}: {completion}")

    def ask(self, command, shows="", **more):
        """The same for what will ask something, or goes on until it is interrupted."""
        self.run(command, shows, "running", 1, **more)

    def is_busy(self, counted=False):
        listed = self.data("list_sessions", counted)["sessions"]
        return next(each["busy"] for each in listed if each["sessionId"] == self.session)

    def shown(self):
        return self.data("read_output", counted=False, sessionId=self.session)["text"]

    def pause(self, shows="", idle=False):
        """Until the terminal has come that far: a model takes longer to answer. Not counted."""
        end = time.monotonic() + DEADLINE_SECONDS
        while shows not in self.shown() or (idle and self.is_busy()):
            expect(time.monotonic() < end, f"{shows!r} in {self.shown()}")
            time.sleep(0.05)

    def let_the_user_answer_the_password(self):
        self.data("focus_session", sessionId=self.session)
        self.place.tmux("send-keys", "-t", "velmora-1", "-l", "right\r")

    def close(self):
        self.helper.stdin.close()
        self.helper.wait(DEADLINE_SECONDS)
        self.helper.stdout.close()


def expect(holds, what):
    if not holds:
        raise WrongTurn("expected " + what)


FIX_SYNTAX = "sed -i 's/add(2, 3)$/add(2, 3);/; s/sums/sum/' calc.c"
FIX_SUM = "sed -i 's/a - b/a + b/' calc.c"
BUILD = "cc -o calc calc.c && ./calc"
SUBSTITUTE = ":%s/a - b/a + b/ | x"
SUITE_END = 500  # characters: enough for the sum and the last tests


def project_plain(agent, work):
    agent.create()
    agent.step(f"cd {work} && {BUILD}; echo rc=$?", "rc=1", idle=True)
    agent.step(f"{FIX_SYNTAX} && {BUILD}; echo rc=$?", "-1\nrc=1", idle=True)
    agent.step(f"{FIX_SUM} && {BUILD}; echo rc=$?", "5\nrc=0", idle=True)


def project_extended(agent, work):
    agent.create(directory=work)
    agent.run(BUILD, "error")
    agent.run(f"{FIX_SYNTAX} && {BUILD}", "-1")
    agent.run(f"{FIX_SUM} && {BUILD}", "5")


def project_is_done(agent):
    built = subprocess.run([agent.place.work / "calc"], check=False, capture_output=True, text=True)
    return (built.returncode, built.stdout) == (0, "5\n") and "5\nrc=0\n" in agent.seen and not agent.is_busy()


def repl_plain(agent, _):
    agent.create()
    agent.step("python3 -q", ">>>")
    agent.step("print(6*7)", "42")
    agent.step("sum(range(10**6))", "499999500000")
    agent.step("while True: pass\n", "...")
    agent.step("\u0003", "KeyboardInterrupt")
    agent.step("exit()", idle=True)


def repl_extended(agent, _):
    agent.create()
    agent.ask("python3 -q", ">>>")
    agent.ask("print(6*7)", "42")
    agent.ask("sum(range(10**6))", "499999500000")
    agent.ask("while True: pass\n")
    agent.ask("\u0003", "KeyboardInterrupt", submit=False)
    agent.run("exit()")


def repl_is_done(agent):
    return all(each in agent.seen for each in ("\n42\n", "499999500000", "KeyboardInterrupt")) and not agent.is_busy()


def suite_plain(agent, work):
    agent.create()
    agent.send(f"cd {work} && ./tests.sh; echo rc=$?")
    for line in (6, 12, 18, 24, 30, 36):
        agent.pause(f"test {line:02} of 40")
        expect(agent.is_busy(counted=True), "tests that still run")
    agent.pause("rc=3", idle=True)
    expect(not agent.is_busy(counted=True), "tests that have ended")
    agent.read(maxCharacters=SUITE_END)


def suite_extended(agent, work):
    agent.create(directory=work)
    agent.run("./tests.sh", maxCharacters=SUITE_END)


def suite_is_done(agent):
    return "39 passed, 1 failed\nrc=3\n" in agent.seen and not agent.is_busy()


def nested_plain(agent, _):
    agent.create()
    agent.step("bash --norc", "bash-")
    agent.step("echo shell $SHLVL on $(uname)", "shell 2 on Linux")


def nested_extended(agent, _):
    agent.create()
    agent.ask("bash --norc", "bash-")
    agent.ask("echo shell $SHLVL on $(uname)", "shell 2 on Linux")


def nested_is_done(agent):
    return "shell 2 on Linux" in agent.seen and agent.is_busy()


def installer_plain(agent, work):
    agent.create()
    agent.step(f"cd {work} && ./install.sh; echo rc=$?", "Continue?")
    agent.step("Y", "Press any key")
    agent.key("return")
    agent.pause("Which one?")
    agent.read()
    agent.step("2", "Sorry")  # its Return answers the password
    agent.let_the_user_answer_the_password()
    agent.pause("Installed kind 2", idle=True)
    agent.read()


def installer_extended(agent, work):
    agent.create(directory=work)
    agent.ask("./install.sh; echo rc=$?", "Continue?")
    agent.ask("Y", "Press any key")
    agent.ask("x", "Which one?", submit=False)
    agent.ask("2", "Password:", submit=False)
    agent.spent_where_recorded_ended = agent.calls, agent.characters
    agent.let_the_user_answer_the_password()
    agent.read(waitSeconds=30)


def installer_is_done(agent):
    return "Installed kind 2\nrc=0\n" in agent.seen and not agent.is_busy()


def editor_plain(agent, work):
    agent.create()
    agent.step(f"cd {work} && vi -u NONE add.c", "return a - b")
    agent.step(SUBSTITUTE, idle=True)
    agent.step("cat add.c", "return a + b", idle=True)


def editor_extended(agent, work):
    agent.create(directory=work)
    agent.ask("vi -u NONE add.c", "return a - b")
    agent.run(SUBSTITUTE)
    agent.run("cat add.c", "return a + b")


def editor_is_done(agent):
    file = (agent.place.work / "add.c").read_text()
    return "return a + b" in file and "return a + b" in agent.seen and not agent.is_busy()


# `recorded`: the calls and characters of agents that were watched with the plain form of that time. `met`: the goals that
# hold, and have to go on holding.
Job = collections.namedtuple("Job", "name plain extended is_done recorded met")
CALLS, CHARACTERS, CALLS_BEFORE, CHARACTERS_BEFORE = range(4)
JOBS = (
    Job("C project, two errors", project_plain, project_extended, project_is_done,
        (10, 5_900), (CALLS_BEFORE, CHARACTERS_BEFORE)),
    Job("REPL, interrupt a loop", repl_plain, repl_extended, repl_is_done,
        (19, 9_000), (CALLS_BEFORE, CHARACTERS_BEFORE)),
    Job("test suite", suite_plain, suite_extended, suite_is_done,
        (12, 18_100), (CALLS, CHARACTERS, CALLS_BEFORE, CHARACTERS_BEFORE)),
    Job("nested shell", nested_plain, nested_extended, nested_is_done,
        (7, 2_600), (CALLS_BEFORE,)),  # its characters are half within the digits of a tty
    Job("installer's questions", installer_plain, installer_extended, installer_is_done,
        (10, 4_100), (CALLS_BEFORE,)),
    Job("vim", editor_plain, editor_extended, editor_is_done, (18, 6_100), (CALLS_BEFORE, CHARACTERS_BEFORE)),
)
GOALS = ("calls", "characters", "calls against those recorded before", "characters against those recorded before")


def play(job, programs):
    """For the plain form and the extended one: calls, characters, and what went wrong."""
    return [play_form(job, programs, extended) for extended in (False, True)]


def play_form(job, programs, extended):
    place = Place(programs)
    agent = Agent(place, extended)
    fault = None
    try:
        (job.extended if extended else job.plain)(agent, str(place.work))
        expect(job.is_done(agent), f"the job to be done: {agent.seen}")
    except (WrongTurn, KeyError, TypeError) as error:
        fault = f"{type(error).__name__}: {error}"
    finally:
        agent.close()
        place.close()
    spent = agent.calls, agent.characters
    return *spent, fault, agent.spent_where_recorded_ended or spent


def read_once(programs):
    """What a model reads of the tools before its first call, in each form; most clients show it no output schemas."""
    place = Place(programs)
    for extended in (False, True):
        agent = Agent(place, extended)
        tools = agent.request("tools/list", {})["tools"]
        shown = [{name: tool[name] for name in ("name", "description", "inputSchema")} for tool in tools]
        whole, part = (len(json.dumps(each, ensure_ascii=False, separators=(",", ":"))) for each in (tools, shown))
        print(f"read once, {'extended' if extended else 'plain'} form: {part:,} characters of names, descriptions and "
              f"arguments, {len(agent.instructions):,} of instructions; tools/list with all it has is {whole:,}")
        agent.close()
    place.close()


def figures(spent, extended):
    """The cells of a table, and whether the goal is met, for calls and for characters."""
    met = [2 * more <= less for less, more in zip(spent, extended)]
    cells = (f"{less:,} | {more:,} | {more / less:.2f} {'OK' if good else 'MISS'}"
             for less, more, good in zip(spent, extended, met))
    return " | ".join(cells), met


def main():
    programs = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else
                            pathlib.Path(__file__).resolve().parent.parent / "build/dev/bin").resolve()
    faults, passed, rows, missed = [], 0, {"The plain form today": [], "The plain form, recorded before": []}, 0
    with concurrent.futures.ThreadPoolExecutor(JOBS_AT_ONCE) as threads:
        for job, (plain, extended) in zip(JOBS, threads.map(lambda job: play(job, programs), JOBS)):
            met = []
            for against, before, after in zip(rows, (plain, job.recorded), (extended, extended[3])):
                cells, good = figures(before[:2], after)
                rows[against].append(f"| {job.name} | {cells} |")
                met += good
            missed += met.count(False)
            checks = [(not plain[2], plain[2]), (not extended[2], extended[2]),
                      *((met[goal], "no longer half the " + GOALS[goal]) for goal in job.met)]
            passed += sum(good for good, _ in checks)
            faults += (f"FAILED: {job.name}: {what}" for good, what in checks if not good)
    for against, lines in rows.items():
        print(f"{against}, and the extended form:")
        print("| Job | Calls | extended | ratio | Characters | extended | ratio |\n|---|---:|---:|---:|---:|---:|---:|")
        print("\n".join(lines))
    read_once(programs)
    print(f"goals: {4 * len(JOBS) - missed} OK, {missed} MISS")
    for fault in faults:
        print(fault)
    print(f"{passed} passed, {len(faults)} failed")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
