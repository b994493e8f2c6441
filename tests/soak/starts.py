"""Starting in a place that is not as it should be: the bridge refuses with a reason, or it serves; it never hangs."""

import json
import os
import select
import shutil
import signal
import socket
import subprocess

from clients import eventually
from laboratory import KEPT_HISTORY, SETTINGS, Laboratory

PROMPT = 5


def start(laboratory, **options):
    """"serves", "refuses", or "hangs"; and the process."""
    bridge = laboratory.launch("velmora-headless", stdout=subprocess.PIPE, **options)
    if not select.select([bridge.stdout], [], [], PROMPT)[0]:
        return "hangs", bridge
    return ("serves" if bridge.stdout.readline() else "refuses"), bridge


def odd_files(report):
    def replaced(make):
        def prepare(laboratory):
            (laboratory.data / "settings.json").unlink()
            make(laboratory.data / "settings.json")
        return prepare

    def mistyped(file):
        file.write_text(json.dumps({"schemaVersion": 1, "settings": SETTINGS | {"sesionPolicy": "selective"}}))

    for words, prepare, expected, said in (
            ("settings.json is a link that leads nowhere", replaced(lambda file: file.symlink_to("/nonexistent/s")),
             "refuses", "settings.json"),
            ("settings.json is a fifo", replaced(os.mkfifo), "refuses", "settings.json"),
            ("settings.json has no end", replaced(lambda file: file.symlink_to("/dev/zero")), "refuses", "settings.json"),
            ("a key of settings.json is mistyped", replaced(mistyped), "serves", "sesionPolicy"),
            ("history.json is a fifo", lambda laboratory: os.mkfifo(laboratory.data / "history.json"), "serves", "istory")):
        with Laboratory(**KEPT_HISTORY) as laboratory:
            prepare(laboratory)
            seen, bridge = start(laboratory)
            report.check(f"{words}: the bridge {expected} and says so", seen == expected and said in laboratory.said(),
                         f"it {seen}: {laboratory.said()[-120:] or 'not a word'}")
            if seen == "hangs":
                bridge.terminate()
                heard = eventually(lambda: bridge.poll() is not None, 2)
                report.check(f"{words}: SIGTERM is heard", heard, "" if heard else "not within 2 s")


def odd_folders(report):
    with Laboratory(**KEPT_HISTORY) as laboratory:
        folder = laboratory.socket.parent
        folder.mkdir()
        folder.chmod(0)
        options = {}
        if os.geteuid() == 0:  # for root there are no modes
            for path in (laboratory.root, *laboratory.root.rglob("*")):
                shutil.chown(path, 65534, 65534)
            options = {"user": 65534, "group": 65534, "extra_groups": []}
        laboratory.errors.touch()
        try:
            seen, _ = start(laboratory, **options)
        except PermissionError:
            report.note("its own folder has mode 000: not tried, because another user may not run the programs")
            return
        report.check("its own folder has mode 000: the bridge mends it and serves", seen == "serves",
                     f"it {seen}: {laboratory.said().strip()[-120:]}")


def other_bridges(report):
    with Laboratory(**KEPT_HISTORY) as laboratory:
        laboratory.start_bridge()
        elsewhere = laboratory.root / "run2"
        elsewhere.mkdir(mode=0o700)
        before = len(laboratory.said())
        seen, _ = start(laboratory, environment=laboratory.environment | {"XDG_RUNTIME_DIR": str(elsewhere)})
        said = laboratory.said()[before:].strip()
        report.check("a second bridge with another runtime folder does not share the history in silence",
                     seen == "refuses" or (seen == "serves" and "history" in said),
                     f"it {seen}: {said[-150:] or 'not a word'}")

    with Laboratory() as laboratory:
        bridge = laboratory.start_bridge()
        bridge.send_signal(signal.SIGSTOP)
        knocks = []
        try:
            while len(knocks) < 200:
                knocks.append(socket.socket(socket.AF_UNIX))
                knocks[-1].setblocking(False)
                knocks[-1].connect(str(laboratory.socket))
        except BlockingIOError:
            pass  # the queue is full
        seen, second = start(laboratory)
        report.check("behind a stopped bridge with a full queue a second one refuses promptly", seen == "refuses",
                     f"it {seen}")
        if seen == "hangs":
            second.kill()
        for knock in knocks:
            knock.close()


def run(seconds, report):
    for scene in (odd_files, odd_folders, other_bridges):
        scene(report)
