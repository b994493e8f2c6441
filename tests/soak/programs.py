"""Programs and questions in the foreground: what arrives is what was meant, or a refusal that says why."""

import os
import shutil
import time

from clients import counted, eventually, outcome, sentence
from laboratory import Laboratory


class Stage:
    """A pane in which a program runs, with input to busy sessions allowed unless said otherwise."""

    def __init__(self, laboratory, command):
        self.laboratory = laboratory
        self.pane = laboratory.new_pane()
        if laboratory.bridge is None:
            laboratory.start_bridge()
        self.id = laboratory.idle_session(self.pane)
        laboratory.types(self.pane, command)
        laboratory.keys(self.pane, "Enter")

    def shows(self, text, seconds=5):
        return eventually(lambda: text in self.laboratory.screen(self.pane), seconds)

    def send(self, text):
        answer = self.laboratory.call("terminal_send_command", sessionId=self.id, command=text)
        time.sleep(0.3)
        return answer

    def key(self, key):
        return self.laboratory.call("terminal_send_key", sessionId=self.id, key=key)

    def busy(self):
        return self.laboratory.session(self.pane)["busy"]

    def last_lines(self):
        lines = [line.strip() for line in self.laboratory.screen(self.pane).splitlines()]
        return [line for line in lines if line not in ("", "~")][-3:]


def vim(report, laboratory):
    file = laboratory.home / "vim.txt"
    file.write_text("a + b\n")
    stage = Stage(laboratory, f"{shutil.which('vim') or 'vi'} -u NONE -N {file}")
    stage.shows("a + b")
    stage.send(":%s/a + b/b + a/")
    stage.send(":x")
    eventually(lambda: not stage.busy(), 2)
    text = file.read_text()
    report.check("vim: a command line is obeyed, not inserted", text == "b + a\n",
                 "" if text == "b + a\n" else f"the file holds {text!r}; the screen {stage.last_lines()}")


def nano(report, laboratory):
    if not shutil.which("nano"):
        report.note("nano: not tried, because it is not installed")
        return
    file = laboratory.home / "nano.txt"
    stage = Stage(laboratory, f"nano -I {file}")
    stage.shows("GNU nano")
    stage.send("first line")
    stage.send("second line")
    arrived = stage.shows("first line\nsecond line\n", 2)
    report.check("nano: lines arrive as they are", arrived, "" if arrived else f"{stage.last_lines()}")
    stage.send("\x0f")  # writes; the Return accepts the name
    stage.send("\x18")
    eventually(lambda: not stage.busy(), 2)
    text = file.read_text() if file.exists() else ""
    report.check("nano: control characters act as keys do", text.rstrip("\n") == "first line\nsecond line" and
                 not stage.busy(), f"{text!r}; {stage.last_lines()}")


def python(report, laboratory):
    result = laboratory.home / "python.txt"
    stage = Stage(laboratory, "/usr/bin/python3 -q")
    stage.shows(">>>")
    stage.send("total = 0")
    stage.send("for number in range(5):\n    total += number\n")
    stage.send(f"_ = open('{result}', 'w').write(str(total))")
    written = eventually(lambda: result.exists() and result.read_text(), 2)
    report.check("python3: one line and a block are run", written == "10",
                 "" if written == "10" else f"{written}; {stage.last_lines()}")
    stage.send("\x04")


def less(report, laboratory):
    text = laboratory.home / "less.txt"
    text.write_text("\n".join(f"line {number}" for number in range(500)) + "\n")
    stage = Stage(laboratory, f"less {text}")
    stage.shows("line 20")
    stage.send("/line 400")
    found = stage.shows("line 401", 2)
    down = stage.key("pageDown")["ok"]
    stage.send("q")
    ended = eventually(lambda: not stage.busy(), 2)
    report.check("less: a search, a key and q act", found and down and ended,
                 "" if found and down and ended else f"found {bool(found)}, key {down}, ended {bool(ended)}")


def plain_read(report, laboratory):
    stage = Stage(laboratory, f"read -r answer; printf '%s' \"$answer\" > {laboratory.home}/read.txt")
    time.sleep(0.3)
    words = "it's \\ \"quoted\"; $HOME `x` 한국어"
    stage.send(words)
    eventually(lambda: (laboratory.home / "read.txt").exists(), 2)
    file = laboratory.home / "read.txt"
    text = file.read_text() if file.exists() else ""
    report.check("read: the line arrives as it is", text == words, "" if text == words else repr(text))


def secret(report, laboratory, words, command, prompt):
    stage = Stage(laboratory, command)
    if not stage.shows(prompt):
        report.note(f"{words}: not tried, because it asks for nothing here: {stage.last_lines()}")
        return
    time.sleep(0.2)
    answer = stage.send("hunter2")
    refused = not answer["ok"] and "secret" in sentence(answer)
    report.check(f"{words}: a secret is not typed, whatever the settings", refused,
                 outcome(answer) + " " + sentence(answer)[:90])
    laboratory.keys(stage.pane, "C-c")


def secrets(report, laboratory):
    secret(report, laboratory, "read -s", "read -r -s -p 'Password: ' word", "Password:")
    as_another = "setpriv --reuid 65534 --regid 65534 --clear-groups " if os.geteuid() == 0 else ""
    secret(report, laboratory, "sudo's prompt", f"{as_another}sudo -k -p 'Password of %p: ' true", "Password of")


def refused_by_default(report):
    with Laboratory() as laboratory:
        stages = [Stage(laboratory, command) for command in
                  ("less /etc/services", "/usr/bin/python3 -q", "read -r x", "sleep 60", "read -r -s x")]
        time.sleep(0.5)
        answers = [stage.send(laboratory.entry(1, stage.pane)) for stage in stages]
        report.check("less, python3, read, sleep, read -s: refused as busy by default",
                     all(outcome(answer).startswith("SESSION_BUSY") for answer in answers),
                     counted(map(outcome, answers)))


# Not fish's own read: nothing tells it from fish's prompt, as docs/Tmux.md says.
QUESTIONS = [
    ("/bin/bash", "read -n 1", "read -p 'Delete all? ' -n 1 a; [ $a = y ] && rm -f f*"),
    ("/bin/bash", "read -s -n 1", "read -s -p 'Delete all? ' -n 1 a; [ $a = y ] && rm -f f*"),
    ("/usr/bin/zsh", "rm *", "rm *"),
    ("/usr/bin/zsh", "read -q", "read -q '?Delete all? ' && rm -f f*"),
    ("/usr/bin/zsh", "read -k 1", "read -k 1 '?Delete all? ' a; [ $a = y ] && rm -f f*"),
]


def questions(report):
    """A question that the shell asks by itself is no prompt: a command that begins with y must not say yes."""
    for shell, words, command in QUESTIONS:
        name = shell.rsplit("/", 1)[1]
        with Laboratory(shell=shell) as laboratory:
            for number in range(5):
                (laboratory.home / f"f{number}").touch()
            stage = Stage(laboratory, command)
            time.sleep(0.5)
            answer = stage.send("yes | head -1")
            time.sleep(0.5)
            files = len(list(laboratory.home.glob("f?")))
            report.check(f"{name}: {words} is not answered by a command", files == 5 and not answer["ok"],
                         f"{outcome(answer)}; {files} of 5 files left")


def long_lines(report):
    """A shell that takes whole lines from the kernel gets 4,095 bytes of one."""
    for shell in ("/bin/bash", "/usr/bin/dash"):
        with Laboratory(shell=shell) as laboratory:
            folder = laboratory.home / "D"
            (folder / "old").mkdir(parents=True)
            (folder / "precious").touch()
            pane = laboratory.new_pane()
            laboratory.start_bridge()
            id = laboratory.idle_session(pane)
            keep = f"; rm -r {folder}"
            answer = laboratory.call("terminal_send_command", sessionId=id,
                                     command="true " + "p" * (4095 - 5 - len(keep)) + keep + "/old")
            eventually(lambda: not (folder / "old").exists(), 2)
            whole = (folder / "precious").exists() and answer["ok"] == (not (folder / "old").exists())
            report.check(f"{shell.rsplit('/', 1)[1]}: a line of 4,099 bytes runs whole or not at all", whole,
                         f"{outcome(answer)} {sentence(answer)[:80]}".strip() if whole
                         else f"{outcome(answer)}, cut and run")


def run(seconds, report):
    with Laboratory(allowBusySessionInput=True) as laboratory:
        for program in (vim, nano, python, less, plain_read, secrets):
            program(report, laboratory)
    refused_by_default(report)
    questions(report)
    long_lines(report)
