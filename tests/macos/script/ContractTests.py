"""The scenarios that a Mac can play, on the tests' desktop; and packaging/macos/record.sh, which plays them there."""

import os
import pathlib
import pickle
import subprocess
import sys
import tempfile
import unittest

import play
import syntax
from desktop import NOT_PERMITTED
from dictionary import SYSTEM_EVENTS, TERMINAL
from scriptTesting import CONTRACT

RECORD = syntax.ROOT / "packaging" / "macos" / "record.sh"
STAND_IN = pathlib.Path(__file__).with_name("osascript.py")


def answers():
    lines = (CONTRACT / "answers.txt").read_text(encoding="utf-8").splitlines()
    return dict(line.split(": ", 1) for line in lines)


class AnswerTests(unittest.TestCase):
    def test_each_scenario_answers_as_written_down(self):
        handlers, desktop = syntax.read(play.source()), play.users_desktop()
        self.assertEqual(play.scenarios(), list(answers()))
        for name, answer in answers().items():
            self.assertEqual(play.play(handlers, desktop, name), answer, name)

    def test_an_answer_is_a_fact_and_no_error(self):
        for name, answer in answers().items():
            self.assertRegex(answer, r"^\{.+\}$", name)

    def test_the_users_window_stays_as_it_was(self):
        handlers, desktop = syntax.read(play.source()), play.users_desktop()
        for name in play.scenarios():
            play.play(handlers, desktop, name)
        shown = [window for window in desktop.windows if window.visible]
        self.assertEqual([window.id for window in shown], [41])
        self.assertEqual(shown[0].tabs[0].typed, [])
        touched = [verb for _, verb, arguments in desktop.events if verb in ("set", "close", "do script") and "41" in str(arguments)]
        self.assertEqual(touched, [])


class RecordTests(unittest.TestCase):
    """record.sh with a stand-in for osascript that asks the tests' desktop, which lives in a file between the calls."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.program("osascript", f'exec "{sys.executable}" -B "{STAND_IN}" "{self.folder}/desktop" "$3"')
        self.program("sw_vers", 'case $1 in -productVersion) echo 15.0 ;; *) echo 24A335 ;; esac')
        self.desktop = play.users_desktop()

    def program(self, name, text):
        path = self.folder / name
        path.write_text(f"#!/bin/sh\n{text}\n", encoding="utf-8")
        path.chmod(0o755)

    def record(self, *arguments):
        with open(self.folder / "desktop", "wb") as file:
            pickle.dump(self.desktop, file)
        environment = {**os.environ, "PATH": f"{self.folder}:{os.environ['PATH']}"}
        return subprocess.run(["bash", RECORD, *arguments], env=environment, capture_output=True, text=True)

    def test_every_answer_is_the_same_and_is_written_down(self):
        written = self.folder / "answers"
        result = self.record("--keys", str(written))
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)
        self.assertEqual(result.stdout.splitlines()[-1], f"{len(answers())} passed, 0 failed")
        lines = written.read_text(encoding="utf-8").splitlines()
        self.assertEqual(lines[0], "# macOS 15.0 (24A335)")
        self.assertEqual(lines[1:], (CONTRACT / "answers.txt").read_text(encoding="utf-8").splitlines())

    def test_a_terminal_that_differs_is_told_line_by_line(self):
        self.desktop.closed_keeps_tab = True
        result = self.record("--only", "closedWindow")
        self.assertEqual(result.returncode, 1)
        different = [line for line in result.stdout.splitlines() if line.startswith("DIFFERS")]
        self.assertEqual(different, ["DIFFERS closedWindow: {true, 1, false, 7}, the tests count on {true, 0, false, 0}"])

    def test_keys_are_pressed_only_when_asked(self):
        result = self.record("--only", "pressedKeys")
        self.assertEqual(result.stdout.splitlines()[-1], "0 passed, 0 failed")
        self.assertEqual(result.returncode, 1)
        with open(self.folder / "desktop", "rb") as file:
            self.assertEqual(pickle.load(file).keys, [])

    def test_a_mac_that_does_not_allow_it_is_told_apart(self):
        self.desktop.consent[TERMINAL] = False
        result = self.record()
        self.assertEqual(result.returncode, 3)
        self.assertIn(f"error {NOT_PERMITTED}", result.stderr)
        self.assertIn("Automation", result.stderr)

    def test_a_user_who_takes_a_minute_to_allow_it_is_waited_for(self):
        self.desktop.consent[TERMINAL] = None
        self.desktop.consent_takes = 60
        result = self.record("--only", "newWindow")
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)

    def test_a_terminal_that_does_not_run_is_started(self):
        self.desktop.running = False
        result = self.record("--only", "newWindow")
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)

    def test_an_error_inside_a_scenario_is_an_answer_that_differs(self):
        self.desktop.consent[SYSTEM_EVENTS] = False
        result = self.record("--keys", "--only", "pressedKeys")
        self.assertEqual(result.returncode, 1)
        self.assertIn("DIFFERS pressedKeys: error -1743", result.stdout)


if __name__ == "__main__":
    unittest.main()
