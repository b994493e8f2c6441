"""readOutput: the screen or the whole history, its end when it is long, and how much there was."""

import unittest

from desktop import OTHER, Tab
from dictionary import TERMINAL
from scriptTesting import FIRST, FIRST_TAB, SECOND_TAB, ScriptTestCase, one_window, two_windows
from values import MISSING


class ReadingTests(ScriptTestCase):
    def read(self, text, most=100):
        self.given(one_window(Tab(FIRST, contents=text)))
        return self.call("readOutput", "visible", most, FIRST, 7)

    def test_the_screen_and_the_history_are_told_apart(self):
        self.given(two_windows())
        self.assertEqual(self.call("readOutput", "visible", 100, *FIRST_TAB), ["$ ls\na b", 8])
        self.assertEqual(self.call("readOutput", "history", 100, *FIRST_TAB), ["old\n$ ls\na b", 12])

    def test_a_long_text_is_cut_at_its_front_and_counted_whole(self):
        self.assertEqual(self.read("$ ls\na b", most=3), ["a b", 8])
        self.assertEqual(self.read("$ ls\na b", most=7), [" ls\na b", 8])

    def test_a_text_of_just_the_limit_is_whole(self):
        self.assertEqual(self.read("$ ls\na b", most=8), ["$ ls\na b", 8])

    def test_an_emoji_or_a_letter_with_its_accent_is_one_character(self):
        self.assertEqual(self.read("ae\u0301👩\u200d💻", most=2), ["e\u0301👩\u200d💻", 3])

    def test_nothing_is_an_empty_text(self):
        for nothing in ("", "\n\n\n", MISSING):
            self.assertEqual(self.read(nothing), ["", 0])

    def test_only_the_empty_lines_at_the_end_go(self):
        self.assertEqual(self.read("\na\n\nb\n \n\n"), ["\na\n\nb\n ", 7])
        self.assertEqual(self.read("a"), ["a", 1])

    def test_what_a_tab_that_ended_shows_can_be_read(self):
        self.given(one_window(Tab(FIRST, [], contents="bye")))
        self.assertEqual(self.call("readOutput", "visible", 100, FIRST, 7), ["bye", 3])

    def test_a_busy_tab_can_be_read(self):
        self.given(two_windows())
        self.assertEqual(self.call("readOutput", "visible", 100, *SECOND_TAB), ["", 0])

    def test_reads_and_changes_nothing(self):
        self.given(two_windows())
        self.call("readOutput", "history", 100, *SECOND_TAB)
        self.assertLessEqual(set(self.verbs()), {"get", "count"})
        self.assertEqual(self.desktop.front, OTHER)

    def test_a_tab_that_is_gone_is_an_error(self):
        self.given(two_windows())
        self.assert_error(-1728, "readOutput", "visible", 100, FIRST, 42)

    def test_a_history_that_hangs_costs_twenty_seconds(self):
        for source, property_name in (("visible", "contents"), ("history", "history")):

            def hang(desktop, verb, arguments):
                desktop.hanging = TERMINAL if arguments[0] == property_name else None

            self.given(two_windows()).before_event = hang
            self.assert_error(-1712, "readOutput", source, 100, *FIRST_TAB)
            self.assert_takes(20)


if __name__ == "__main__":
    unittest.main()
