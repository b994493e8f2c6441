"""Waiting before a read, and reading only what is new, over a real tmux. A cursor that skips or repeats a line would be
worse than none."""

import re
import time
import unittest

from conversation import Conversation
from extended_tests import REVISIONS, Talk, until
from fake_application import FakeApplication, response_to
from helper_process import Folder, environment_in
from real_bridge import RealBridge

BLOCKED = "SESSION_NOT_ALLOWED"


class Reading(Talk):
    """One bridge and one client for all tests of a class; each opens a window of its own."""

    @classmethod
    def setUpClass(cls):
        cls.folder = Folder()
        cls.addClassCleanup(cls.folder.close)
        cls.real = RealBridge(cls.folder.path)
        cls.addClassCleanup(cls.real.close)
        cls.conversation = Conversation(REVISIONS[0], {**environment_in(cls.folder.path), "VELMORA_EXTENDED": "1"})
        cls.addClassCleanup(cls.conversation.close)
        cls.conversation.initialize()
        cls.tools = {tool["name"]: tool for tool in cls.conversation.result("tools/list")["tools"]}

    def setUp(self):
        self.conversation.notifications.clear()

    def start(self, **window):
        made = self.open_window(**window)
        session, self.window = made["sessionId"], made["title"].split(":")[0]
        self.begin(session, "PS1='$ '; clear")
        until(lambda: self.read(session)["text"] == "$")
        return session

    def run_in(self, session, command, **more):
        sent = self.data("terminal_send_command", sessionId=session, command=command, waitSeconds=40, **more)
        self.assertEqual(sent["completion"]["state"], "finished", sent)

    def read(self, session, **more):
        return self.data("terminal_read_output", sessionId=session, **more)

    def begin(self, session, command):
        self.data("terminal_send_command", sessionId=session, command=command)

    def begin_read(self, session, conversation=None, **more):
        """A read that waits; `await_waiting` returns when the bridge is about it."""
        return (conversation or self.conversation).send(
            "tools/call", {"name": "terminal_read_output", "arguments": {"sessionId": session, **more}},
            token=f"read {session}")

    def await_waiting(self, session, conversation=None):
        """Only a bridge that waits tells the last line of the session; the helper by itself says what it waits for."""
        (conversation or self.conversation).first_notification(
            lambda note: note["params"]["progressToken"] == f"read {session}"
            and not note["params"]["message"].startswith("Waiting for "))

    def told(self, line):
        """Waits until the progress of a call has told this line."""
        self.conversation.first_notification(lambda note: note["params"]["message"] == line)

    def data_of(self, id):
        envelope = self.conversation.result_of(id)["structuredContent"]
        self.assertTrue(envelope["ok"], envelope)
        return envelope["data"]


class Waiting(Reading):
    def test_idle_is_met_when_the_command_has_ended(self):
        session = self.start()
        mark = self.folder.path / "mark"
        for pause in ("0", "0.4"):
            self.begin(session, f"sleep {pause}; echo > {mark}")
            read = self.read(session, waitSeconds=40)
            self.assertTrue(read["met"] and mark.exists(), read)
            self.assertFalse(read["session"]["busy"])
            mark.unlink()

    def test_idle_is_not_met_while_a_command_runs(self):
        session = self.start()
        self.begin(session, "sleep 1000")
        read = self.read(session, waitSeconds=1, until="idle")
        self.assertEqual((read["met"], read["session"]["busy"]), (False, True), read)

    def test_a_change_of_the_screen_is_met(self):
        session = self.start()
        self.assertFalse(self.read(session, waitSeconds=1, until="change")["met"])
        waiting = self.begin_read(session, waitSeconds=40, until="change")
        # Whenever the wait begins, something changes after that.
        self.begin(session, "while echo cha''nged; do sleep 0.1; done")
        self.assertTrue(self.data_of(waiting)["met"])

    def test_waits_go_on_beside_each_other_and_beside_what_others_do(self):
        scrolling, shared, cancelled = self.start(), self.start(), self.start()
        other = Conversation(REVISIONS[0], {**environment_in(self.folder.path), "VELMORA_EXTENDED": "1"})
        self.addCleanup(other.close)
        other.initialize()
        self.begin(cancelled, "sleep 1000")
        needle = self.begin_read(scrolling, waitSeconds=40, until="text", waitText="needle-42")
        text = self.begin_read(shared, waitSeconds=40, until="text", waitText="from-42")
        change = self.begin_read(shared, other, waitSeconds=40, until="change")
        never = self.begin_read(cancelled, waitSeconds=40)
        for session in (scrolling, shared, cancelled):
            self.await_waiting(session)
        self.await_waiting(shared, other)

        self.conversation.cancel(never)  # from now on an answer to it would be noticed
        self.assertTrue(self.listed(cancelled)["busy"])
        with self.subTest("one client waits while another sends"):
            begun = time.monotonic()
            sent = other.result("tools/call", {"name": "terminal_send_command", "arguments": {
                "sessionId": shared, "command": "echo from-$((40+2))", "waitSeconds": 40}})["structuredContent"]["data"]
            self.assertEqual((sent["completion"]["state"], sent["completion"]["output"]), ("finished", "from-42"))
            self.assertTrue(self.data_of(text)["met"])
            self.assertTrue(other.result_of(change)["structuredContent"]["data"]["met"])
            self.assertLess(time.monotonic() - begun, 20)
        with self.subTest("a text is met though it scrolls away at once"):
            self.begin(scrolling, "seq 500; echo needle-$((40+2)); seq 500")
            self.assertTrue(self.data_of(needle)["met"])
            self.assertFalse(self.read(scrolling, waitSeconds=1, until="text", waitText="nothing like it")["met"])

    def test_after_a_cursor_only_what_is_new_counts(self):
        session = self.start()
        self.run_in(session, "echo done-$((40+2))")
        old = self.read(session)
        self.assertTrue(self.read(session, waitSeconds=1, until="text", waitText="done-42")["met"])
        self.assertFalse(self.read(session, waitSeconds=1, until="text", waitText="done-42", after=old["cursor"])["met"])

    def test_a_session_that_ends_meanwhile_is_said_to_have_ended(self):
        session = self.start()
        self.begin(session, "sleep 1; exit")
        for how in ({"until": "idle"}, {"until": "change", "waitSeconds": 3}):
            ended = self.envelope("terminal_read_output", sessionId=session, **{"waitSeconds": 40, **how})
            self.assertIn(ended["error"]["code"], ("SESSION_NOT_FOUND", "SESSION_STALE"))

    def test_what_waits_tells_the_last_line(self):
        session, other = self.start(), self.start()
        go_on = self.folder.path / "told"
        until_then = f"until [ -e {go_on} ]; do sleep 0.1; done"
        sent = self.conversation.send("tools/call", {"name": "terminal_send_command", "arguments": {
            "sessionId": session, "command": f"printf 'step %s' 3-$((3*3)); {until_then}; echo", "waitSeconds": 40}},
                                      token="steps")
        self.begin(other, f"echo begun-$((40+2)); {until_then}")
        waiting = self.begin_read(other, waitSeconds=40)
        self.told("step 3-9")
        self.told("begun-42")
        go_on.touch()
        self.assertEqual(self.data_of(sent)["completion"]["state"], "finished")
        self.assertTrue(self.data_of(waiting)["met"])

    def test_what_is_asked_for_wrongly_is_said(self):
        session = self.start()
        for wrong, words in (({"waitSeconds": 46}, "between 0 and 45"), ({"until": "idle"}, "needs waitSeconds"),
                             ({"waitSeconds": 1, "waitText": "a"}, 'needs until "text"'),
                             ({"waitSeconds": 1, "until": "text"}, "needs waitText"),
                             ({"waitSeconds": 1, "until": "text", "waitText": "a\nb"}, "one line"),
                             ({"waitSeconds": 1, "until": "later"}, "is none of idle, change, text"),
                             ({"after": "A B"}, "cursor of an earlier answer"), ({"format": "html"}, "is none of plain")):
            refused = self.envelope("terminal_read_output", sessionId=session, **wrong)
            self.assertEqual(refused["error"]["code"], "INVALID_ARGUMENT", wrong)
            self.assertIn(words, refused["error"]["message"])


class OnlyWhatIsNew(Reading):
    def new(self, session, before, **more):
        """What came after an earlier answer, as that answer's client would put it together."""
        read = self.read(session, after=before["cursor"], **more)
        self.assertFalse(read["cursorLost"], (before, read))
        return read

    def test_nothing_is_nothing(self):
        session = self.start()
        before = self.read(session)
        after = self.new(session, before)
        self.assertEqual((after["text"], after["returnedCharacters"], after["truncated"]), ("", 0, False))
        self.assertEqual(after["cursor"], before["cursor"])
        self.assertNotIn("cursorLost", before)

    def test_a_line_that_has_changed_comes_again_whole(self):
        session = self.start()
        before = self.read(session)
        self.run_in(session, "echo one; echo two")
        after = self.new(session, before)
        self.assertEqual(after["text"], "$ echo one; echo two\none\ntwo\n$")
        go_on = self.folder.path / "go-on"
        self.begin(session, f"printf '10%%'; until [ -e {go_on} ]; do sleep 0.1; done; printf '\\r20%%'; sleep 1000")
        until(lambda: self.read(session, after=after["cursor"])["text"].endswith("\n10%"))
        ten = self.read(session, after=after["cursor"])
        go_on.touch()
        until(lambda: self.read(session, after=ten["cursor"])["text"] == "20%")

    def test_every_line_comes_once_however_fast_they_come(self):
        session = self.start()
        self.begin(session, "clear; for i in $(seq 200); do echo line $i; sleep 0.005; done; echo the-end")
        seen = until(lambda: read if (read := self.read(session))["text"].startswith("line ") else None)
        lines = seen["text"].splitlines()
        first = int(lines[0].split()[1])
        while "$" not in lines[-1]:
            seen = self.new(session, seen)
            if seen["text"]:
                fresh = seen["text"].splitlines()
                if not lines[-1].startswith("line") or lines[-1] != f"line {first + len(lines) - 1}":
                    lines.pop()  # it was not finished
                elif fresh[0].startswith(lines[-1]):
                    lines.pop()
                lines += fresh
        numbers = [int(line.split()[1]) for line in lines if line.startswith("line ")]
        self.assertEqual(numbers, list(range(first, 201)))

    def test_more_than_a_screen_is_all_there(self):
        session = self.start()
        before = self.read(session)
        self.run_in(session, "seq 1000")
        self.assertEqual(self.new(session, before)["text"].splitlines()[1:-1], [str(i) for i in range(1, 1001)])
        short = self.new(session, before, maxCharacters=10)
        self.assertEqual((short["text"], short["truncated"]), ("999\n1000\n$", True))

    def test_wrapped_lines_stay_whole(self):
        session = self.start(columns=40)
        before = self.read(session)
        self.run_in(session, "printf 'a%.0s' $(seq 100); echo; echo b")
        after = self.new(session, before)
        self.assertEqual(after["text"].splitlines()[1:], ["a" * 100, "b", "$"])
        go_on = self.folder.path / "go-on-too"
        self.begin(session, f"printf 'c%.0s' $(seq 90); until [ -e {go_on} ]; do sleep 0.1; done; "
                            "printf 'd%.0s' $(seq 40); sleep 1000")
        until(lambda: self.read(session, after=after["cursor"])["text"].endswith("c" * 90))
        unfinished = self.read(session, after=after["cursor"])
        go_on.touch()
        until(lambda: self.read(session, after=unfinished["cursor"])["text"] == "c" * 90 + "d" * 40)

    def test_a_cleared_screen_is_lost(self):
        session = self.start()
        self.run_in(session, "seq 100")
        before = self.read(session)
        self.run_in(session, "clear; echo new")
        after = self.read(session, after=before["cursor"])
        self.assertEqual((after["cursorLost"], after["text"]), (True, "new\n$"))

    def test_another_width_is_lost(self):
        session = self.start()
        self.run_in(session, "seq 100")
        before = self.read(session)
        self.tmux("resize-window", "-t", self.window, "-x", "70")
        self.assertTrue(self.read(session, after=before["cursor"])["cursorLost"])

    def test_another_height_is_not(self):
        session = self.start()
        self.run_in(session, "seq 100")
        before = self.read(session)
        for rows in (10, 60):
            self.tmux("resize-window", "-t", self.window, "-y", str(rows))
            self.run_in(session, "echo high")
            self.assertEqual(self.new(session, before)["text"].count("\nhigh\n"), 1 if rows == 10 else 2)

    def test_a_full_screen_program_does_not_mislead(self):
        session = self.start()
        self.run_in(session, "seq 100")
        before = self.read(session)
        self.begin(session, "seq 500 | less")
        until(lambda: self.listed(session)["alternateScreen"])
        inside = self.read(session, after=before["cursor"])
        self.assertTrue(inside["cursorLost"])
        self.assertNotIn("cursorLost", self.read(session))

    def test_a_history_that_was_trimmed_is_lost_or_found_but_never_wrong(self):
        session = self.start()
        self.run_in(session, "seq 1950")
        before = self.read(session)
        found = 0
        last = 1950
        for step in (10, 150, 170, 400, 900, 5000):
            self.run_in(session, f"seq {last + 1} {last + step}")
            last += step
            after = self.read(session, after=before["cursor"], maxCharacters=50000)
            if not after["cursorLost"]:
                found += 1
                self.assertEqual(after["text"].splitlines()[1:-1], [str(i) for i in range(last - step + 1, last + 1)])
            before = after
        self.assertGreaterEqual(found, 4)
        self.assertTrue(after["cursorLost"])

    def test_where_all_lines_are_alike_a_trimmed_history_is_lost(self):
        session = self.start()
        self.run_in(session, "yes | head -n 1970", maxCharacters=10)
        before = self.read(session)
        self.run_in(session, "yes | head -n 210", maxCharacters=10)
        after = self.read(session, after=before["cursor"])
        if not after["cursorLost"]:
            self.assertEqual(after["text"].splitlines().count("y"), 210)

    def test_what_another_session_gave_is_lost(self):
        session = self.start()
        other = self.open_window()["sessionId"]
        self.run_in(other, "PS1='$ '; clear")
        for cursor in (self.read(other)["cursor"], "t0-3c-0-0-0", "nonsense"):
            self.assertTrue(self.read(session, after=cursor)["cursorLost"])

    def tmux(self, *arguments):
        self.real.tmux(*arguments)


class Colours(Reading):
    SGR = re.compile("\x1b\\[[0-9;:]*m")

    def test_colours_are_kept_when_asked_for(self):
        session = self.start()
        before = self.read(session)
        self.run_in(session, "printf '\\033[31mred\\033[0m \\033[1;4;38;5;12mbold\\033[0m\\n'; printf '\\033]8;;x:y\\033\\\\link\\n'")
        plain = self.read(session, after=before["cursor"])
        coloured = self.read(session, after=before["cursor"], format="ansi")
        self.assertEqual(self.SGR.sub("", coloured["text"]), plain["text"])
        self.assertIn("\x1b[31mred", coloured["text"])
        self.assertNotIn("\x1b", plain["text"])
        self.assertEqual(coloured["cursor"], plain["cursor"])

    def test_a_cut_never_falls_into_a_sequence_and_ends_without_colour(self):
        session = self.start()
        self.run_in(session, "printf '\\033[1;33m%s\\n' $(seq 20); printf '\\033[0m'")
        whole = self.SGR.sub("", self.read(session)["text"])
        for most in list(range(1, 60)) + [100, 150]:
            read = self.read(session, format="ansi", maxCharacters=most)
            self.assertLessEqual(len(read["text"]), most)
            self.assertEqual(read["returnedCharacters"], len(read["text"]))
            plain = self.SGR.sub("", read["text"])
            self.assertNotIn("\x1b", plain, most)
            self.assertTrue(whole.endswith(plain), most)
            state = [sequence for sequence in self.SGR.findall(read["text"]) if re.search("[1-9]", sequence)]
            if state and not re.fullmatch("\x1b\\[[345]9m", state[-1]):
                self.assertGreater(read["text"].rfind("\x1b[0m"), read["text"].rfind(state[-1]), read["text"])


class OverAnOlderApplication(Talk):
    """One that knows the extended form, but nothing of this."""

    SESSION = "00000000-0000-0000-0000-000000000001"

    def setUp(self):
        super().setUp()
        self.application = FakeApplication(self.folder.path,
                                           respond=lambda request: {**response_to(request), "extended": True})
        self.addCleanup(self.application.close)
        self.extended()

    def test_what_it_ignores_is_missing_in_its_answer(self):
        read = self.data("terminal_read_output", sessionId=self.SESSION, waitSeconds=2, until="change", format="ansi",
                         after="t0-0-0-0-0")
        self.assertTrue({"met", "cursor", "cursorLost"}.isdisjoint(read))


del Talk, Reading  # their own tests run elsewhere

if __name__ == "__main__":
    unittest.main()
