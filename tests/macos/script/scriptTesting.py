"""What the tests of TerminalBridge.applescript share: the script, a desktop for it, and calls of its handlers."""

import pathlib
import unittest

import interpreter
import syntax
from desktop import Desktop, Tab, Window
from values import ScriptError

SCRIPT = syntax.ROOT / "TerminalAutomation" / "AppleScript" / "TerminalBridge.applescript"
CONTRACT = pathlib.Path(__file__).parent / "contract"


class Script:
    """The script under test. scripts/applescript-mutants.py puts changed ones here."""

    handlers = syntax.read(SCRIPT.read_text(encoding="utf-8"))


FIRST, SECOND = "/dev/ttys001", "/dev/ttys002"
# Arguments that address the first and the second tab of two_windows().
FIRST_TAB, SECOND_TAB = (FIRST, 41), (SECOND, 42)


def two_windows():
    """The front one with a shell at its prompt, the other with an editor."""
    waiting = Tab(FIRST, contents="$ ls\na b\n\n\n", history="old\n$ ls\na b\n\n")
    editing = Tab(SECOND, ["login", "-zsh", "vim"], busy=True)
    return [Window(41, [waiting], "one"), Window(42, [editing], "two")]


def one_window(*tabs, number=7, **state):
    return [Window(number, tabs, "front", **state)]


class ScriptTestCase(unittest.TestCase):
    def given(self, windows=(), **state):
        """A desktop with these windows, for the calls that follow."""
        self.desktop = Desktop(windows)
        for name, value in state.items():
            assert hasattr(self.desktop, name), name
            setattr(self.desktop, name, value)
        return self.desktop

    def call(self, handler, *arguments):
        return interpreter.Interpreter(Script.handlers, self.desktop).call(handler, *arguments)

    def assert_error(self, number, handler, *arguments):
        with self.assertRaises(ScriptError) as caught:
            self.call(handler, *arguments)
        self.assertEqual(caught.exception.number, number, caught.exception.text)

    def listed(self, *windows):
        """The rows that a desktop with these windows gives."""
        self.given(windows)
        return self.call("listSessions")

    def assert_takes(self, seconds, tolerance=0.09):
        """How long the call took, by the desktop's clock. Events take some milliseconds."""
        self.assertAlmostEqual(self.desktop.now, seconds, delta=tolerance)

    def verbs(self):
        return [verb for _, verb, _ in self.desktop.events]

    def typed(self):
        return [tab.typed for window in self.desktop.windows for tab in window.tabs]

    def fail_at(self, number, *wanted):
        """Plants an error wherever Terminal is asked for one of these: "busy", "count"."""

        def plant(desktop, verb, arguments):
            if verb in wanted or (verb == "get" and arguments[0] in wanted):
                raise ScriptError(number, "planted")

        self.desktop.before_event = plant
