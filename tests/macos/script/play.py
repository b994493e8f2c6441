#!/usr/bin/env python3
"""Plays the scenarios of contract/ on the tests' desktop and prints the answers, as contract/answers.txt keeps them.

    play.py > contract/answers.txt
"""

import sys

import interpreter
import syntax
from desktop import Desktop, Tab, Window
from scriptTesting import CONTRACT, SCRIPT
from values import ScriptError, source_form

SCENARIO_ARGUMENTS = ("ttyname", "windownumber")


def source():
    return SCRIPT.read_text(encoding="utf-8") + (CONTRACT / "Scenarios.applescript").read_text(encoding="utf-8")


def scenarios():
    """The scenarios' names, in the file's order."""
    handlers = syntax.read((CONTRACT / "Scenarios.applescript").read_text(encoding="utf-8"))
    shared = handlers["rowofwindow"].line
    return [one.name for one in handlers.values() if one.line < shared and one.parameters == SCENARIO_ARGUMENTS]


def users_desktop():
    """What the user has open meanwhile."""
    return Desktop([Window(41, [Tab("/dev/ttys001", contents="mine\n")], "the user's")])


def play(handlers, desktop, name):
    """The answer of a scenario, in a window of its own."""

    def call(handler, *arguments):
        return interpreter.Interpreter(handlers, desktop).call(handler, *arguments)

    row = call("createWindow")
    try:
        return source_form(call(name, row[0], row[1]))
    except ScriptError as error:
        return f"error {error.number}"
    finally:
        if call("isShown", row[1]):
            call("closeWindow", row[1])


def main():
    handlers, desktop = syntax.read(source()), users_desktop()
    for name in scenarios():
        print(f"{name}: {play(handlers, desktop, name)}")


if __name__ == "__main__":
    sys.exit(main())
