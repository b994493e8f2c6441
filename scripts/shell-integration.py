#!/usr/bin/env python3
"""Costs and endurance of the shell integration. Not part of the tests: it takes minutes.

  shell-integration.py cost            processor time that the snippet costs a prompt, for each shell
  shell-integration.py repeat [N]      N commands (200) for each shell over a real bridge: no wrong exit code

VELMORA_BIN is the folder of the programs (build/dev/bin)."""

import os
import pathlib
import pty
import random
import select
import signal
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
SCRIPTS = ROOT / "ShellIntegration"
SHELLS = {"bash": ["bash", "--norc"], "zsh": ["zsh", "-f"], "fish": ["fish", "--no-config"]}
# What stands between two readings of the shell's own processor time: the functions that run at each prompt.
LOOPS = {
    "bash": "for ((i = 0; i < {n}; i++)); do {b} done",
    "zsh": "for ((i = 0; i < {n}; i++)); do {b} done",
    "fish": "for i in (seq {n}); {b} end",
}
BODIES = {
    "bash": ("__velmora_began=1; __velmora_prompt;", ":; :;"),
    "zsh": ("__velmora_preexec; __velmora_precmd;", ":; :;"),
    "fish": ("__velmora_began; __velmora_ended; __velmora_over; __velmora_prompted;", "true; true; true; true;"),
}
ROUNDS = 4000
REPEATS = 7


class Shell:
    """A shell on a terminal of its own."""

    def __init__(self, arguments, environment):
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.execvpe(arguments[0], arguments, environment)

    def say(self, line):
        os.write(self.terminal, line.encode() + b"\n")

    def wait_for(self, path, seconds=120):
        while not path.exists() and seconds > 0:
            readable, _, _ = select.select([self.terminal], [], [], 0.05)
            if readable:
                os.read(self.terminal, 65536)
            else:
                seconds -= 0.05
        return path.exists()

    def processor_time(self):
        fields = pathlib.Path(f"/proc/{self.process}/stat").read_text().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def end(self):
        os.close(self.terminal)
        os.kill(self.process, signal.SIGKILL)
        os.waitpid(self.process, 0)


def cost():
    # The runtime folder is kept in memory on all common systems.
    with tempfile.TemporaryDirectory(dir="/dev/shm") as folder:
        folder = pathlib.Path(folder)
        (folder / "app.velmora.Velmora" / "shells").mkdir(parents=True, mode=0o700)
        environment = {"PATH": os.environ["PATH"], "HOME": str(folder), "TERM": "xterm-256color",
                       "XDG_RUNTIME_DIR": str(folder), "LANG": "C.UTF-8"}
        for name, arguments in SHELLS.items():
            shell = Shell(arguments, environment)
            shell.say(f". {SCRIPTS}/velmora.{name}")
            times = ([], [])
            for run in range(REPEATS):
                for part, body in enumerate(BODIES[name]):
                    mark = folder / f"{name}-{run}-{part}"
                    shell.say(f"true > {mark}-0")
                    shell.wait_for(pathlib.Path(f"{mark}-0"))
                    before = shell.processor_time()
                    shell.say(LOOPS[name].format(n=ROUNDS, b=body) + f"; true > {mark}")
                    if not shell.wait_for(mark):
                        sys.exit(f"{name}: not done in time")
                    times[part].append(shell.processor_time() - before)
            shell.end()
            costs = sorted((with_it - without) / ROUNDS * 1e6 for with_it, without in zip(*times))
            print(f"{name}: {costs[0]:.0f} to {costs[-1]:.0f} us of processor time a prompt, "
                  f"{costs[len(costs) // 2]:.0f} in the median of {REPEATS}")


def repeat(rounds):
    sys.path.insert(0, str(ROOT / "tests" / "mcp"))
    os.environ.setdefault("VELMORA_BIN", str(ROOT / "build" / "dev" / "bin"))
    from shell_integration_tests import Integrated  # pylint: disable=import-outside-toplevel

    wrong = 0
    for name in SHELLS:
        test = Integrated()
        test.setUp()
        session = test.start(name)
        told = 0
        for _ in range(rounds):
            code = random.choice((0, 1, 2, 3, 42, 126, 255))
            pause = random.choice(("", "sleep 0.01; ", "sleep 0.1; ", "true | ", "clear; "))
            completion = test.completion(session, f"{pause}sh -c 'exit {code}'")
            exit_code = completion.get("exitCode")
            told += exit_code is not None
            if completion["state"] != "finished" or exit_code not in (None, code):
                wrong += 1
                print(f"{name}: {pause}exit {code}: {completion}")
        print(f"{name}: {rounds} commands, {told} exit codes told")
        test.conversation.end()
        test.doCleanups()
    print(f"{wrong} wrong")
    return wrong


if __name__ == "__main__":
    if sys.argv[1:2] == ["cost"]:
        cost()
    elif sys.argv[1:2] == ["repeat"]:
        sys.exit(1 if repeat(int(sys.argv[2]) if len(sys.argv) > 2 else 200) else 0)
    else:
        sys.exit(__doc__)
