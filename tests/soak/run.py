"""Runs the scenarios over the real programs, two at a time, each within its share of the time, and counts their lines.

run.py SECONDS [SCENARIO...]; VELMORA_BIN names the folder of the programs. Started by scripts/soak.sh.
"""

import ctypes
import importlib
import os
import pathlib
import signal
import subprocess
import sys
import threading
import time
import traceback

from report import Report

# The seconds that a scenario needs at least, and how it shares in what is left: the random ones go on for as long as
# they may. The longest stand first.
SCENARIOS = {
    "person": (40, 6), "reachability": (20, 1), "hung_tmux": (20, 0), "programs": (20, 0), "starts": (20, 0),
    "endings": (15, 2), "told": (15, 0), "display": (15, 0), "disk": (12, 0), "strangers": (12, 0), "kills": (10, 8),
    "memory": (8, 0), "exhaustion": (8, 0), "burst": (4, 0),
}
LANES = 2
GRACE = 45  # seconds that a scenario, and the whole run, may be late before it is ended


def main():
    total = float(sys.argv[1])
    names = sys.argv[2:] or list(SCENARIOS)
    # What scenarios leave behind becomes a child of this process.
    ctypes.CDLL(None).prctl(36, 1, 0, 0, 0)  # PR_SET_CHILD_SUBREAPER
    plan = shares({name: SCENARIOS[name] for name in names}, total)
    queue = list(plan.items())
    counts = {"OK": 0, "MISS": 0}
    lock = threading.Lock()
    end = time.monotonic() + total + GRACE

    def lane():
        while True:
            with lock:
                if not queue:
                    return
                name, seconds = queue.pop(0)
            lines = lines_of(name, seconds, min(seconds + GRACE, end - time.monotonic()))
            with lock:
                for line in lines:
                    print(line, flush=True)
                    if (word := line.split(" ", 1)[0]) in counts:
                        counts[word] += 1

    lanes = [threading.Thread(target=lane) for _ in range(LANES)]
    for thread in lanes:
        thread.start()
    for thread in lanes:
        thread.join()
    print(f"{counts['OK']} passed, {counts['MISS']} failed")
    return 0 if counts["OK"] and not counts["MISS"] else 1


def shares(scenarios, total):
    """Seconds for each: what it needs, and its part of what the lanes have beyond that."""
    spare = max(0, total * LANES - sum(least for least, _ in scenarios.values()))
    weights = sum(weight for _, weight in scenarios.values()) or 1
    return {name: min(total, least + spare * weight / weights) for name, (least, weight) in scenarios.items()}


def lines_of(name, seconds, limit):
    if limit < 1:
        return [f"MISS  {name}: not begun, because no time is left"]
    mark = f"{os.getpid()}.{name}"
    scenario = subprocess.Popen([sys.executable, "-B", __file__, "--scenario", name, str(seconds)],
                                env=os.environ | {"VELMORA_SOAK": mark}, stdout=subprocess.PIPE, text=True,
                                stderr=subprocess.STDOUT)
    timer = threading.Timer(limit, end_all, [mark])
    timer.start()
    # Until the pipe's end; whatever else has it open is ended with the scenario.
    begun = time.monotonic()
    lines = [line.rstrip("\n") for line in scenario.stdout]
    timer.cancel()
    status = scenario.wait()
    end_all(mark)
    if status < 0:
        lines.append(f"MISS  {name}: ended after {time.monotonic() - begun:.0f} s, because it took too long")
    elif status > 0:
        lines.append(f"MISS  {name}: broken off after {time.monotonic() - begun:.0f} s, as said above")
    return lines


def end_all(mark):
    """Ends every process that carries the mark, by its id."""
    wanted = f"VELMORA_SOAK={mark}\0".encode()
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if wanted in (folder / "environ").read_bytes() + b"\0" and int(folder.name) != os.getpid():
                os.kill(int(folder.name), signal.SIGKILL)
        except OSError:
            continue  # it has gone, or is another user's


def play(name, seconds):
    report = Report()
    try:
        importlib.import_module(name).run(seconds, report)
    except Exception:
        print("      " + traceback.format_exc().replace("\n", "\n      ").rstrip(), flush=True)
        return 1
    return 0


if __name__ == "__main__":
    if sys.argv[1] == "--scenario":
        sys.exit(play(sys.argv[2], float(sys.argv[3])))
    sys.exit(main())
