"""The disk is full, read-only or fails at one step of a save: what the caller is told is true, and nothing asks to
repeat a command that was delivered."""

import re
import shutil
import signal
import subprocess
import time

from clients import counted, eventually, outcome, sentence
from laboratory import KEPT_HISTORY, Laboratory

DELIVERED = re.compile(r"delivered|typed|ran\b", re.IGNORECASE)
OFF = {"persistentHistoryEnabled": False}


def mount(laboratory, *options):
    """The data folder becomes a disk of 128 KB; whether that may be done here."""
    settings = laboratory.data / "settings.json"
    text = settings.read_text()
    done = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=128k,mode=0700," + ",".join(options), "tmpfs",
                           laboratory.data], check=False, capture_output=True)
    settings.write_text(text)
    return done.returncode == 0


def make_read_only(laboratory):
    # The mount only: who is root in a namespace of their own may not change the disk.
    subprocess.run(["mount", "-o", "remount,bind,ro", laboratory.data], check=True)


def fill(laboratory):
    try:
        with open(laboratory.data / "filling", "wb", buffering=0) as file:
            while True:
                file.write(b"x" * 1024)
    except OSError:
        pass


def use_up_names(laboratory):
    number = 0
    try:
        while True:
            (laboratory.data / f"name-{number}").touch()
            number += 1
    except OSError:
        pass


class Injection:
    """Makes system calls of the running bridge fail; `every` is strace's word for when."""

    def __init__(self, calls, error, every):
        self._calls, self._error, self._every = calls, error, every
        self._process = None

    def __call__(self, laboratory):
        pid = laboratory.bridge.pid
        self._process = laboratory.launch(
            "/usr/bin/strace", "-f", "-qq", "-o", "/dev/null", "-e", f"trace={self._calls}",
            "-e", f"inject={self._calls}:error={self._error}:when={self._every}", "-p", str(pid))
        traced = f"TracerPid:\t{self._process.pid}\n"
        if not eventually(lambda: traced in open(f"/proc/{pid}/status").read()):
            raise RuntimeError("strace could not attach")


def leave_an_old_history(laboratory):
    (laboratory.data / "history.json").write_text("{}")
    make_read_only(laboratory)


RENAMES = "rename,renameat,renameat2"
# What happens to the disk before the command.
TROUBLES = [
    ("the disk is full", fill),
    ("the disk has no name left", use_up_names),
    ("the disk is read-only", make_read_only),
    ("the data folder is gone", lambda laboratory: shutil.rmtree(laboratory.data, ignore_errors=True)),
    ("flushing the new file fails", Injection("fsync,fdatasync", "EIO", "1+2")),
    ("flushing the folder fails", Injection("fsync,fdatasync", "EIO", "2+2")),
    ("the renaming fails", Injection(RENAMES, "EROFS", "1+")),
    ("the mode cannot be set", Injection("chmod,fchmod,fchmodat", "EROFS", "1+")),
]


def recorded(laboratory, number):
    try:
        return any(f"echo {number} " in record.get("commandBody", "") for record in laboratory.history())
    except (OSError, ValueError):
        return False


def told_the_truth(laboratory, answer, number, kept):
    """What is wrong with an answer to a command that ran; empty when it is right."""
    if answer["ok"]:
        return "" if not kept or recorded(laboratory, number) else "ok, but no record"
    if answer["error"]["retryable"]:
        return "asks to repeat it"
    if not DELIVERED.search(sentence(answer)):
        return "does not say that it was delivered"
    return "" if not recorded(laboratory, number) else "says that the record was not saved, but it was"


def try_trouble(report, words, trouble, kept):
    settings = KEPT_HISTORY if kept else OFF
    words = f"{words}, history {'kept' if kept else 'off'}"
    with Laboratory(**settings) as laboratory:
        if not mount(laboratory, "nr_inodes=16"):
            report.note(f"{words}: not tried, because nothing can be mounted here")
            return
        pane = laboratory.new_pane()
        laboratory.start_bridge()
        id = laboratory.idle_session(pane)
        helper = laboratory.helper()
        first = helper.call("terminal_send_command", sessionId=id, command=laboratory.entry(1, pane))
        eventually(lambda: laboratory.runs()[1])
        trouble(laboratory)
        answers = helper.obedient("terminal_send_command", sessionId=laboratory.idle_session(pane),
                                  command=laboratory.entry(2, pane))
        eventually(lambda: laboratory.runs()[2], 1)
        time.sleep(0.2)
        runs = laboratory.runs()[2]
        wrong = told_the_truth(laboratory, answers[-1], 2, kept) if runs else "it never ran"
        report.check(f"{words}: a command runs once and the answer is true", first["ok"] and runs == 1 and not wrong,
                     f"{counted(map(outcome, answers))}" if runs == 1 and not wrong
                     else f"ran {runs} times; {wrong}; {counted(map(outcome, answers))}: {sentence(answers[-1])}")


def deleting_at_the_end(report):
    """The history is to be deleted at the end, and cannot be."""
    with Laboratory(**KEPT_HISTORY | {"deleteOnAppExit": True}) as laboratory:
        if not mount(laboratory):
            report.note("deleting at the end on a read-only disk: not tried, because nothing can be mounted here")
            return
        pane = laboratory.new_pane()
        laboratory.start_bridge()
        laboratory.call("terminal_send_command", sessionId=laboratory.idle_session(pane), command="true")
        make_read_only(laboratory)
        laboratory.stop_bridge(signal.SIGTERM)
        said = laboratory.said().strip()
        report.check("a history that cannot be deleted at the end is said to be there", "history" in said.lower(),
                     said[-150:] or "not a word")


def run(seconds, report):
    for words, trouble in TROUBLES:
        try_trouble(report, words, trouble, kept=True)
    for words, trouble in [*TROUBLES[:3], ("an old history cannot be removed", leave_an_old_history)]:
        try_trouble(report, words, trouble, kept=False)
    deleting_at_the_end(report)
