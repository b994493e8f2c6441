#!/usr/bin/env python3
"""Makes some hundred small changes of TerminalBridge.applescript, one at a time, and runs the tests of tests/macos/script
over each: a change that no test notices stands for a fault that none would.

    applescript-mutants.py

Prints how many were found and those that were not, and ends with "1 passed, 0 failed" when only the changes of HARMLESS
are left, each of which has its reason there. Takes half a minute on two processors.
"""

import concurrent.futures
import importlib
import io
import os
import pathlib
import re
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "tests" / "macos" / "script"))
import scriptTesting  # noqa: E402  (the path comes first)
import syntax  # noqa: E402

TESTS = ["StatusTests", "ListingTests", "InputTests", "ReadingTests", "ShowingTests", "WindowTests", "RefusalTests"]

# What is looked for in a line, and what takes its place.
SWAPS = [
    (r"\bis not\b", "is"),
    (r"\bis (?!not|running)", "is not "),
    (r" > ", " < "),
    (r" and ", " or "),
    (r" or ", " and "),
    (r"\bnot (?=my|\(|busy|outlived)", ""),
    (r"\bif (?!not)", "if not "),
    (r"\btrue\b", "false"),
    (r"\bfalse\b", "true"),
    (r"\bhistory of\b", "contents of"),
    (r"\bcontents of\b", "history of"),
    (r"\bbusy of\b", "selected of"),
    (r"\btabNumber\b", "windowNumber"),
    (r"\bwindowNumber\b", "tabNumber"),
    (r"\browNumber\b", "otherNumber"),
    (r"\bname of window\b", "custom title of tab tabNumber of window"),
    (r"\bfrontmost of window\b", "visible of window"),
    (r"\bminiaturized of window\b", "visible of window"),
    (r"\bdoes not contain\b", "contains"),
    (r"\bitem 2 of", "item 1 of"),
    (r"\bitem 4 of", "item 2 of"),
    (r"\bitem 1 of", "item 2 of"),
    (r"\bleftEdge, topEdge\b", "topEdge, leftEdge"),
    (r"-maxCharacters", "maxCharacters"),
    (r" - ", " + "),
    (r"\bstarts with\b", "contains"),
]
NUMBER = re.compile(r"(?<![\w.])\d+(?:\.\d+)?(?![\w.])")
# Lines that only open or close a block.
FRAME = re.compile(r"\s*(on (?!error)|end\b|if .* then$|else|repeat|try|tell .*Terminal\"$|with timeout|on error)")

# Changes that no caller can notice: a part of the line, the change ("*" for any), and why.
HARMLESS = [
    ("repeat while lineTotal > 0", "0 → 1", "the first line is left then, which is empty too"),
]


def changes(source):
    """(number of the line, what was done, the changed script)"""
    lines = source.split("\n")

    def with_line(place, *new):
        return "\n".join([*lines[:place], *new, *lines[place + 1 :]])

    for place, line in enumerate(lines):
        code = line.split("--")[0]
        if not code.strip() or re.match(r"on (?!error)|end \w+$", code):
            continue
        if not FRAME.match(code):
            yield place + 1, "left out", with_line(place)
        # Texts are not looked into.
        blanked = re.sub(r'"[^"]*"', lambda text: "_" * len(text.group()), code)
        for pattern, new in SWAPS:
            for match in re.finditer(pattern, blanked):
                changed = code[: match.start()] + new + code[match.end() :]
                yield place + 1, f"{match.group().strip()} → {new.strip()}", with_line(place, changed)
        for match in NUMBER.finditer(blanked):
            number = match.group()
            new = str(float(number) * 10) if "." in number else str(int(number) + 1)
            if "timeout" in code:
                new = str(int(number) * 3)
            changed = code[: match.start()] + new + code[match.end() :]
            yield place + 1, f"{number} → {new}", with_line(place, changed)


class FirstFailure(unittest.TestResult):
    """Stops at the first test that notices."""

    def addError(self, test, error):
        super().addError(test, error)
        self.stop()

    addFailure = addError

    def addSubTest(self, test, subtest, error):
        super().addSubTest(test, subtest, error)
        if error:
            self.stop()


def suite():
    return unittest.TestSuite(unittest.defaultTestLoader.loadTestsFromModule(importlib.import_module(name)) for name in TESTS)


def found(source):
    """Who notices a changed script: "reader", "tests" or nobody."""
    try:
        scriptTesting.Script.handlers = syntax.read(source)
    except syntax.NotUnderstood:
        return "reader"
    result = FirstFailure()
    # Prints nothing: a test may say what it saw.
    sys.stdout, visible = io.StringIO(), sys.stdout
    try:
        suite().run(result)
    finally:
        sys.stdout = visible
    return "" if result.wasSuccessful() else "tests"


def judge(job):
    line, what, source = job
    return line, what, found(source)


def reason(text, what):
    for part, change, why in HARMLESS:
        if part in text and change in ("*", what):
            return part, change, why
    return None


def main():
    source = scriptTesting.SCRIPT.read_text(encoding="utf-8")
    lines = source.split("\n")
    if found(source):
        sys.exit("the tests fail without any change")
    jobs = list(changes(source))
    with concurrent.futures.ProcessPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(judge, jobs, chunksize=8))
    finders = [noticed for _, _, noticed in results]
    killed, refused = sum(map(bool, finders)), finders.count("reader")
    print(f"{killed} of {len(results)} changes found, {refused} of them before a test, because they are no AppleScript")
    failed, used = False, set()
    for line, what, noticed in results:
        if noticed:
            continue
        known = reason(lines[line - 1], what)
        used.add(known)
        print(f"  {'harmless ' if known else 'NOT FOUND'} {line}: {what}: {known[2] if known else lines[line - 1].strip()}")
        failed = failed or known is None
    for entry in HARMLESS:
        if entry not in used:
            print(f"  no longer needed in HARMLESS: {entry[0]}: {entry[1]}")
            failed = True
    print("0 passed, 1 failed" if failed else "1 passed, 0 failed")
    return failed


if __name__ == "__main__":
    sys.exit(main())
