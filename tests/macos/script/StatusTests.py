"""bridgeStatus and systemEventsStatus: what runs, what is allowed, and how the user is asked."""

import unittest

from desktop import Tab, Window
from dictionary import SYSTEM_EVENTS, TERMINAL
from scriptTesting import ScriptTestCase, one_window, two_windows


class StatusTests(ScriptTestCase):
    def test_without_terminal_nothing_is_sent(self):
        self.given(running=False)
        self.assertEqual(self.call("bridgeStatus"), [False, 0])
        self.assertEqual(self.desktop.events, [])

    def test_counts_the_windows_that_hold_a_tab(self):
        self.given([*two_windows(), Window(9, visible=False)])
        self.assertEqual(self.call("bridgeStatus"), [True, 2])

    def test_a_window_of_several_tabs_counts_once(self):
        self.given(one_window(Tab("/dev/ttys001"), Tab("/dev/ttys002", selected=False)))
        self.assertEqual(self.call("bridgeStatus"), [True, 1])

    def test_terminal_without_windows_runs(self):
        self.given()
        self.assertEqual(self.call("bridgeStatus"), [True, 0])

    def test_a_moment_in_which_the_system_does_not_see_terminal_is_no_absence(self):
        self.given(two_windows(), unseen_until=0.018)
        self.assertEqual(self.call("bridgeStatus"), [True, 2])

    def test_a_terminal_that_hangs_costs_five_seconds(self):
        self.given(two_windows(), hanging=TERMINAL)
        self.assert_error(-1712, "bridgeStatus")
        self.assert_takes(5)

    def test_reads_and_changes_nothing(self):
        self.given(two_windows())
        self.call("bridgeStatus")
        self.assertLessEqual(set(self.verbs()), {"get", "count"})


class SystemEventsTests(ScriptTestCase):
    def test_says_whether_keys_may_be_pressed(self):
        for allowed in (True, False):
            self.given(may_press_keys=allowed)
            self.assertEqual(self.call("systemEventsStatus"), [allowed])

    def test_waits_for_the_user_as_long_as_the_system_does(self):
        self.given(consent_takes=120)
        self.desktop.consent[SYSTEM_EVENTS] = None
        self.assertEqual(self.call("systemEventsStatus"), [True])

    def test_system_events_that_hang_cost_150_seconds(self):
        self.given(hanging=SYSTEM_EVENTS)
        self.assert_error(-1712, "systemEventsStatus")
        self.assert_takes(150)

    def test_a_refusal_is_passed_on(self):
        self.given()
        self.desktop.consent[SYSTEM_EVENTS] = False
        self.assert_error(-1743, "systemEventsStatus")

    def test_terminal_is_not_asked(self):
        self.given(running=False)
        self.assertEqual(self.call("systemEventsStatus"), [True])


if __name__ == "__main__":
    unittest.main()
