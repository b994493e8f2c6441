"""sendCommand and sendKey: the right tab or none, and nothing more once something else is in front."""

import unittest

from desktop import OTHER, Tab, Window
from dictionary import SYSTEM_EVENTS, TERMINAL
from scriptTesting import FIRST, FIRST_TAB, SECOND, SECOND_TAB, ScriptTestCase, one_window, two_windows
from values import ScriptError

RETURN, UP = 36, 126


class CommandTests(ScriptTestCase):
    def test_types_the_text_as_it_is(self):
        self.given(two_windows())
        self.assertIs(self.call("sendCommand", "echo 안녕", *FIRST_TAB, False), True)
        self.assertEqual(self.typed(), [["echo 안녕"], []])

    def test_tty_and_window_must_belong_together(self):
        for tty, window in ((FIRST, 42), ("/dev/ttys009", 41), (FIRST, 77)):
            self.given(two_windows())
            self.assert_error(-1728, "sendCommand", "x", tty, window, True)
            self.assertEqual(self.typed(), [[], []])

    def test_a_busy_tab_is_refused_unless_allowed(self):
        self.given(two_windows())
        self.assert_error(1010, "sendCommand", "x", *SECOND_TAB, False)
        self.assertEqual(self.typed(), [[], []])
        self.call("sendCommand", "x", *SECOND_TAB, True)
        self.assertEqual(self.typed(), [[], ["x"]])

    def test_a_tab_that_ended_is_refused(self):
        self.given(one_window(Tab(FIRST, [])))
        self.assert_error(1011, "sendCommand", "x", FIRST, 7, True)
        self.assertEqual(self.typed(), [[]])

    def test_the_second_tab_of_a_window_gets_its_own_text(self):
        self.given(one_window(Tab(FIRST), Tab(SECOND)))
        self.call("sendCommand", "x", SECOND, 7, False)
        self.assertEqual(self.typed(), [[], ["x"]])

    def test_the_first_of_two_that_live_gets_the_text(self):
        self.given(one_window(Tab(FIRST), Tab(FIRST)))
        self.call("sendCommand", "x", FIRST, 7, False)
        self.assertEqual(self.typed(), [["x"], []])

    def test_the_one_that_lives_gets_the_text(self):
        self.given(one_window(Tab(FIRST, []), Tab(FIRST)))
        self.call("sendCommand", "x", FIRST, 7, False)
        self.assertEqual(self.typed(), [[], ["x"]])
        self.given(one_window(Tab(FIRST), Tab(FIRST, [])))
        self.call("sendCommand", "x", FIRST, 7, False)
        self.assertEqual(self.typed(), [["x"], []])

    def test_without_terminal_nothing_is_sent(self):
        self.given(running=False)
        self.assert_error(-600, "sendCommand", "x", *FIRST_TAB, True)
        self.assertEqual(self.desktop.events, [])

    def test_a_terminal_that_hangs_costs_ten_seconds(self):
        def hang(desktop, verb, arguments):
            desktop.hanging = TERMINAL if verb == "do script" else None

        self.given(two_windows()).before_event = hang
        self.assert_error(-1712, "sendCommand", "x", *FIRST_TAB, False)
        self.assert_takes(10)


class KeyTests(ScriptTestCase):
    def press(self, key, count, *tab_and_busy):
        """As the application does: to the front, then the keys."""
        self.assertIs(self.call("sendKey", key, 0, *tab_and_busy), True)
        self.assertEqual(self.desktop.keys, [])
        self.assertIs(self.call("sendKey", key, count, *tab_and_busy), True)

    def test_presses_a_key_as_often_as_asked(self):
        self.given(two_windows())
        self.press(UP, 3, *FIRST_TAB, False)
        self.assertEqual(self.desktop.keys, [(UP, FIRST)] * 3)

    def test_a_tab_behind_comes_to_the_front_first(self):
        for raised_by in ("index", "frontmost"):
            self.given(two_windows(), raised_by=raised_by)
            self.press(UP, 1, *SECOND_TAB, True)
            self.assertEqual(self.desktop.keys, [(UP, SECOND)], raised_by)

    def test_a_tab_behind_another_in_the_dock_comes_to_the_front_first(self):
        docked = one_window(Tab(FIRST), Tab(SECOND, selected=False), miniaturized=True)
        self.given([Window(5, [Tab("/dev/ttys005")]), *docked])
        self.press(RETURN, 1, SECOND, 7, False)
        self.assertEqual(self.desktop.keys, [(RETURN, SECOND)])

    def test_a_busy_tab_is_refused_unless_allowed(self):
        self.given(two_windows())
        self.assert_error(1010, "sendKey", UP, 1, *SECOND_TAB, False)
        self.assertEqual((self.desktop.keys, self.desktop.front), ([], OTHER))

    def test_a_tab_that_ended_is_refused(self):
        self.given(one_window(Tab(FIRST, [])))
        self.assert_error(1011, "sendKey", UP, 1, FIRST, 7, True)
        self.assertEqual((self.desktop.keys, self.desktop.front), ([], OTHER))

    def test_no_key_before_the_window_had_time_to_come(self):
        self.given(two_windows(), front=TERMINAL)
        self.press(UP, 1, *FIRST_TAB, False)
        pressed = self.verbs().index("key code")
        self.assertIn("activate", self.verbs()[:pressed])
        self.assertGreaterEqual(self.desktop.now, 0.3)

    def test_a_request_that_is_lost_is_made_once_more(self):
        self.given(two_windows(), lost_raises=1)
        self.press(UP, 1, *SECOND_TAB, True)
        self.assertEqual(self.desktop.keys, [(UP, SECOND)])
        self.assertEqual(self.verbs().count("activate"), 2)

    def test_a_slow_window_is_asked_for_once(self):
        self.given(two_windows(), raising_takes=0.9)
        self.press(UP, 1, *SECOND_TAB, True)
        self.assertEqual(self.verbs().count("activate"), 1)

    def test_a_tab_that_never_comes_gets_no_key(self):
        self.given(two_windows(), lost_raises=9)
        with self.assertRaisesRegex(ScriptError, "did not come to the front"):
            self.press(UP, 1, *FIRST_TAB, False)
        self.assertEqual(self.desktop.keys, [])
        self.assert_takes(2 * (0.3 + 14 * 0.05))

    def test_a_window_that_comes_without_its_application_gets_no_key(self):
        self.given(two_windows())
        self.desktop.come_to_front = lambda window: None
        self.assert_error(1012, "sendKey", UP, 0, *FIRST_TAB, False)
        self.assertEqual(self.desktop.keys, [])

    def test_a_press_alone_brings_nothing_to_the_front(self):
        self.given(two_windows())
        self.assert_error(1012, "sendKey", UP, 1, *FIRST_TAB, False)
        self.assertEqual((self.desktop.keys, self.desktop.front), ([], OTHER))

    def test_the_key_of_a_desktop_without_permission_is_an_error(self):
        self.given(two_windows(), front=TERMINAL, may_press_keys=False)
        self.assert_error(1002, "sendKey", UP, 1, *FIRST_TAB, False)

    def test_system_events_that_hang_cost_ten_seconds(self):
        self.given(two_windows(), front=TERMINAL, hanging=SYSTEM_EVENTS)
        self.assert_error(-1712, "sendKey", UP, 1, *FIRST_TAB, False)
        self.assert_takes(10)

    def test_a_terminal_that_hangs_while_it_comes_costs_five_seconds(self):
        for asked, seconds in ((["set"], 5), (["activate"], 5), (["get", "frontmost"], 0.3 + 5)):

            def hang(desktop, verb, arguments):
                desktop.hanging = TERMINAL if asked == [verb, *arguments][: len(asked)] else None

            self.given(two_windows(), raising_takes=0.2).before_event = hang
            self.assert_error(-1712, "sendKey", UP, 0, *FIRST_TAB, False)
            self.assert_takes(seconds)


class InterruptedKeyTests(ScriptTestCase):
    """The user does something else while a key is pressed again and again."""

    def press_until(self, happening, presses=2):
        """`happening(desktop)` comes just before the press of this number arrives."""

        def watch(desktop, verb, arguments):
            if verb == "key code" and len(desktop.keys) == presses - 1:
                happening(desktop)

        self.desktop.before_event = watch
        self.assert_error(1012, "sendKey", UP, 5, FIRST, self.desktop.windows[0].id, False)
        self.assertEqual(len(self.desktop.keys), presses)

    def test_another_application_stops_the_keys(self):
        self.given(two_windows(), front=TERMINAL)
        self.press_until(lambda desktop: setattr(desktop, "front", OTHER))

    def test_another_window_stops_the_keys(self):
        self.given(two_windows(), front=TERMINAL)
        self.press_until(lambda desktop: desktop.windows.reverse())

    def test_another_tab_of_the_window_stops_the_keys(self):
        first, second = Tab(FIRST), Tab(SECOND, selected=False)

        def click(desktop):
            first.selected, second.selected = False, True

        self.given(one_window(first, second), front=TERMINAL)
        self.press_until(click)

    def test_the_error_says_how_many_keys_were_pressed(self):
        self.given(two_windows(), front=TERMINAL)

        def watch(desktop, verb, arguments):
            if verb == "key code" and len(desktop.keys) == 2:
                desktop.front = OTHER

        self.desktop.before_event = watch
        with self.assertRaisesRegex(ScriptError, "after 3 presses"):
            self.call("sendKey", UP, 9, *FIRST_TAB, False)

    def test_there_is_a_pause_between_two_presses_and_none_before_the_first(self):
        self.given(two_windows(), front=TERMINAL)
        self.call("sendKey", UP, 1, *FIRST_TAB, False)
        once = self.desktop.now
        self.given(two_windows(), front=TERMINAL)
        self.call("sendKey", UP, 11, *FIRST_TAB, False)
        self.assertAlmostEqual(self.desktop.now - once, 10 * (0.03 + 3 * self.desktop.event_takes), places=6)


if __name__ == "__main__":
    unittest.main()
