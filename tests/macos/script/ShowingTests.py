"""captureBounds and focusSession: what is on the screen, and bringing a tab there."""

import unittest

from desktop import OTHER, Tab
from dictionary import TERMINAL
from scriptTesting import FIRST, FIRST_TAB, SECOND, SECOND_TAB, ScriptTestCase, one_window, two_windows


class BoundsTests(ScriptTestCase):
    def test_gives_left_top_right_and_bottom_as_integers(self):
        self.given(one_window(Tab(FIRST), bounds=(-879, 20.0, 610, 420)))
        bounds = self.call("captureBounds", FIRST, 7)
        self.assertEqual(bounds, [-879, 20, 610, 420])
        self.assertEqual({type(edge) for edge in bounds}, {int})

    def test_moves_nothing(self):
        self.given(two_windows())
        self.call("captureBounds", *SECOND_TAB)
        self.assertLessEqual(set(self.verbs()), {"get", "count"})
        self.assertEqual(self.desktop.front, OTHER)

    def test_a_window_in_the_dock_has_no_picture(self):
        self.given(one_window(Tab(FIRST), miniaturized=True))
        self.assert_error(1013, "captureBounds", FIRST, 7)

    def test_a_hidden_window_has_no_picture(self):
        self.given(one_window(Tab(FIRST), visible=False))
        self.assert_error(1013, "captureBounds", FIRST, 7)

    def test_a_tab_behind_another_has_no_picture(self):
        self.given(one_window(Tab(FIRST), Tab(SECOND, selected=False)))
        self.assert_error(1013, "captureBounds", SECOND, 7)
        self.assertEqual(self.call("captureBounds", FIRST, 7), [10, 20, 610, 420])

    def test_what_terminal_does_not_tell_is_not_shown(self):
        for asked in ("visible", "selected"):
            self.given(two_windows())
            self.fail_at(-10000, asked)
            self.assert_error(1013, "captureBounds", *FIRST_TAB)

    def test_a_tab_that_is_gone_is_an_error(self):
        self.given(two_windows())
        self.assert_error(-1728, "captureBounds", FIRST, 42)

    def test_a_terminal_that_hangs_costs_five_seconds(self):
        for asked in ("miniaturized", "bounds", "visible"):

            def hang(desktop, verb, arguments):
                desktop.hanging = TERMINAL if arguments[0] == asked else None

            self.given(two_windows()).before_event = hang
            self.assert_error(-1712, "captureBounds", *FIRST_TAB)
            self.assert_takes(5)


class FocusTests(ScriptTestCase):
    def test_brings_a_tab_to_the_front(self):
        for raised_by in ("index", "frontmost"):
            self.given(two_windows(), raised_by=raised_by)
            self.assertIs(self.call("focusSession", *SECOND_TAB), True)
            self.assertEqual((self.desktop.windows[0].id, self.desktop.front), (42, TERMINAL), raised_by)

    def test_takes_a_window_out_of_the_dock(self):
        windows = two_windows()
        windows[1].miniaturized = True
        self.given(windows)
        self.call("focusSession", *SECOND_TAB)
        self.assertFalse(windows[1].miniaturized)

    def test_leaves_alone_what_is_not_in_the_dock(self):
        self.given(two_windows())
        self.call("focusSession", *FIRST_TAB)
        self.assertNotIn("miniaturized", [arguments[0] for _, verb, arguments in self.desktop.events if verb == "set"])

    def test_selects_the_tab_in_its_window(self):
        behind = Tab(SECOND, selected=False)
        self.given(one_window(Tab(FIRST), behind))
        self.call("focusSession", SECOND, 7)
        self.assertTrue(behind.selected)

    def test_a_request_that_is_lost_is_made_once_more(self):
        self.given(two_windows(), lost_raises=1)
        self.call("focusSession", *SECOND_TAB)
        self.assertEqual((self.desktop.windows[0].id, self.desktop.front), (42, TERMINAL))

    def test_terminals_word_that_a_window_did_not_come_is_no_error(self):
        self.given(two_windows(), lost_raises=9)
        self.assertIs(self.call("focusSession", *SECOND_TAB), True)
        self.assertEqual(self.verbs().count("activate"), 2)

    def test_a_tab_that_ended_can_be_shown(self):
        self.given(one_window(Tab(FIRST, [])))
        self.call("focusSession", FIRST, 7)
        self.assertEqual(self.desktop.front, TERMINAL)

    def test_a_tab_that_is_gone_moves_nothing(self):
        self.given(two_windows())
        self.assert_error(-1728, "focusSession", SECOND, 41)
        self.assertEqual(self.desktop.front, OTHER)


if __name__ == "__main__":
    unittest.main()
