"""Prints every benchmark that has a budget, with what was measured. Called by bench.sh with the results' folder."""

import json
import pathlib
import sys

# Benchmarks that have no counters of their own: the most milliseconds each may take.
MILLISECONDS = {"StoreFixture/save": 40, "StoreFixture/load": 40}
# The least throughput, in bytes a second.
THROUGHPUT = {"countCharacters/ascii": 1e9, "countCharacters/korean": 1e8}
# The most megabytes of memory, where a benchmark has the counter.
MEGABYTES = {"startToAnswer": ("rssMB", 6)}
MILLISECONDS_TO_ANSWER = 10


def line(name, measured, budget, unit, holds):
    print(f"{'OK  ' if holds else 'MISS'}  {name:<45} {measured:>10.2f} {unit:<5} budget {budget:g}")


def name_of(run):
    return run["name"].removesuffix("/manual_time").removesuffix("/real_time")


def report(run):
    name = name_of(run)
    if "budget" in run and "value" in run:
        line(name, run["value"], run["budget"], "", run["value"] <= run["budget"])
    if name in MILLISECONDS:
        milliseconds = run["real_time"] * {"ns": 1e-6, "us": 1e-3, "ms": 1}[run["time_unit"]]
        line(name, milliseconds, MILLISECONDS[name], "ms", milliseconds <= MILLISECONDS[name])
    if name in THROUGHPUT:
        line(name, run["bytes_per_second"] / 1e9, THROUGHPUT[name] / 1e9, "GB/s",
             run["bytes_per_second"] >= THROUGHPUT[name])
    if name.startswith("startToAnswer"):
        line(name, run["medianUs"] / 1000, MILLISECONDS_TO_ANSWER, "ms", run["medianUs"] <= MILLISECONDS_TO_ANSWER * 1000)
        counter, budget = MEGABYTES["startToAnswer"]
        line(name, run[counter], budget, "MB", run[counter] <= budget)
    if "lost" in run:
        line(name + " lost", run["lost"], 0, "", run["lost"] == 0)
        line(name + " descriptors more", run["descriptorGrowth"], 0, "", run["descriptorGrowth"] <= 0)
        line(name + " memory more", run["rssGrowthMB"], 0.5, "MB", run["rssGrowthMB"] <= 0.5)
    if "ticks" in run:
        line(name + " processor ticks", run["ticks"], 0, "", run["ticks"] == 0)


for file in sorted(pathlib.Path(sys.argv[1]).glob("*.json")):
    runs = json.loads(file.read_text())["benchmarks"]
    for each in runs:
        report(each)
