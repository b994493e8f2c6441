"""Where the bridge listens may vanish or come late: it is found again within seconds, and there is only ever one."""

import os
import pathlib
import shutil
import subprocess
import time

from clients import eventually
from laboratory import KEPT_HISTORY, PROGRAMS, Laboratory

PROMPT = 5


def seconds_until_answered(laboratory):
    begun = time.monotonic()
    if eventually(laboratory.answers, PROMPT, every=0.1):
        return f"after {time.monotonic() - begun:.1f} s"
    return ""


def only_one(report, laboratory, after):
    """Tries to start a second bridge; a moment later only one of the two may be alive."""
    second = laboratory.launch("velmora-headless")
    eventually(lambda: second.poll() is not None or laboratory.bridge.poll() is not None, PROMPT)
    both = second.poll() is None and laboratory.bridge.poll() is None
    report.check(f"{after}, no second bridge runs on the same history", not both, "both run" if both else "")
    if second.poll() is None:
        second.terminate()
        second.wait()


def vanishing(report, words, remove):
    with Laboratory(**KEPT_HISTORY) as laboratory:
        laboratory.new_pane()
        laboratory.start_bridge()
        before = len(laboratory.said())
        remove(laboratory)
        after = seconds_until_answered(laboratory)
        report.check(f"{words}, the bridge is reachable again within {PROMPT} s", after,
                     after or f"nobody answers; the bridge lives: {laboratory.bridge.poll() is None}")
        said = laboratory.said()[before:]
        report.check(f"{words}, the bridge says so", "socket" in said, said[-200:].strip() or "not a word")
    with Laboratory(**KEPT_HISTORY) as laboratory:
        laboratory.start_bridge()
        remove(laboratory)
        only_one(report, laboratory, words)


def remove_runtime_folder(laboratory):
    shutil.rmtree(laboratory.runtime)
    laboratory.runtime.mkdir(mode=0o700)


def late_folder(report):
    """The bridge starts before the folder that the environment names is there, as at boot."""
    words = "the runtime folder appears only after the start"
    if pathlib.Path(f"/run/user/{os.geteuid()}").exists():
        report.note(f"{words}: not tried, because /run/user/{os.geteuid()} cannot be hidden here")
        return
    with Laboratory(**KEPT_HISTORY) as laboratory:
        early = laboratory.root / "tmp"
        early.mkdir(mode=0o700)
        laboratory.environment["TMPDIR"] = str(early)
        laboratory.runtime.rmdir()
        laboratory.start_bridge()
        before = laboratory.answers()
        laboratory.runtime.mkdir(mode=0o700)
        after = seconds_until_answered(laboratory)
        report.check(f"{words}: the bridge is reachable within {PROMPT} s", before and after,
                     after or f"nobody answers; before the folder came somebody did: {before}")
        doctor = subprocess.run([PROGRAMS / "velmora", "doctor"], env=laboratory.environment, capture_output=True,
                                text=True, check=False)
        report.check(f"{words}: `velmora doctor` finds the bridge", doctor.returncode == 0,
                     "" if doctor.returncode == 0 else doctor.stdout.strip().splitlines()[-1][:150])
        only_one(report, laboratory, words)


def two_at_once(report, seconds):
    """Two starts in the same instant, again and again."""
    rounds = both = none = 0
    end = time.monotonic() + seconds
    with Laboratory(**KEPT_HISTORY) as laboratory:
        while rounds < 5 or (time.monotonic() < end and rounds < 100):
            bridges = [laboratory.launch("velmora-headless") for _ in range(2)]
            eventually(lambda: any(bridge.poll() is not None for bridge in bridges), 0.5)
            alive = [bridge for bridge in bridges if bridge.poll() is None]
            rounds += 1
            both += len(alive) == 2
            none += not alive
            for bridge in alive:
                bridge.terminate()
                bridge.wait()
    report.check("of two bridges started at once one runs", both == none == 0, f"{rounds} starts, both {both}, none {none}")


def run(seconds, report):
    two_at_once(report, seconds - 20)
    vanishing(report, "the socket file removed", lambda laboratory: laboratory.socket.unlink())
    vanishing(report, "the runtime folder removed and made again", remove_runtime_folder)
    late_folder(report)
