"""listSessions: a row for each tab, in Terminal's order, whatever windows and tabs do meanwhile."""

import unittest

from desktop import Tab, Window
from dictionary import TERMINAL
from scriptTesting import FIRST, SECOND, ScriptTestCase, two_windows
from values import MISSING


def numbers(rows):
    return [row[1] for row in rows]


class RowTests(ScriptTestCase):
    def test_a_row_has_tty_window_places_title_and_state(self):
        rows = self.listed(*two_windows())
        self.assertEqual(rows, [[FIRST, 41, 1, 1, "one", False, True], [SECOND, 42, 2, 1, "two", True, True]])

    def test_the_window_index_is_terminals_own(self):
        rows = self.listed(Window(9, visible=False), *two_windows())
        self.assertEqual([row[2] for row in rows], [2, 3])

    def test_several_tabs_of_a_window_have_rows(self):
        front, behind = Tab(FIRST), Tab(SECOND, title="mine", selected=False)
        rows = self.listed(Window(41, [front, behind], "front"))
        self.assertEqual(rows, [[FIRST, 41, 1, 1, "front", False, True], [SECOND, 41, 1, 2, "mine", False, False]])

    def test_a_title_that_terminal_does_not_tell_is_empty(self):
        self.assertEqual(self.listed(Window(1, [Tab(FIRST)], MISSING))[0][4], "")
        self.given(two_windows())
        self.fail_at(-10000, "name")
        self.assertEqual([row[4] for row in self.call("listSessions")], ["", ""])

    def test_a_tab_that_does_not_say_whether_it_is_selected_is_not(self):
        self.given(two_windows())
        self.fail_at(-10000, "selected")
        self.assertEqual([row[6] for row in self.call("listSessions")], [False, False])


class EmptyListingTests(ScriptTestCase):
    def test_without_terminal_there_is_an_error_and_nothing_is_sent(self):
        self.given(running=False)
        self.assert_error(-600, "listSessions")
        self.assertEqual(self.desktop.events, [])

    def test_no_tab_at_all_is_one_row_without_items(self):
        self.assertEqual(self.listed(), [[]])
        self.assertEqual(self.listed(Window(9)), [[]])

    def test_a_tab_without_tty_is_left_out(self):
        for nothing in (MISSING, ""):
            self.assertEqual(self.listed(Window(7, [Tab(nothing)])), [[]])

    def test_a_moment_in_which_the_system_does_not_see_terminal_is_no_absence(self):
        self.given(two_windows(), unseen_until=0.018)
        self.assertEqual(numbers(self.call("listSessions")), [41, 42])


class TwinTests(ScriptTestCase):
    """The system gives the tty of a shell that has ended to a new tab, and the old one keeps naming it."""

    def test_the_one_that_ended_goes(self):
        for windows in ([41, 7], [7, 41]):
            ended, alive = Window(7, [Tab(FIRST, [])]), Window(41, [Tab(FIRST)])
            self.assertEqual(numbers(self.listed(*({7: ended, 41: alive}[number] for number in windows))), [41])

    def test_the_one_that_ended_goes_though_it_is_newer(self):
        self.assertEqual(numbers(self.listed(Window(9, [Tab(FIRST, [])]), Window(7, [Tab(FIRST)]))), [7])

    def test_a_tab_that_ended_alone_stays(self):
        self.assertEqual(numbers(self.listed(Window(7, [Tab("/dev/ttys009", [])]))), [7])

    def test_of_two_that_live_the_newer_window_stays(self):
        self.assertEqual(numbers(self.listed(Window(7, [Tab(FIRST)]), Window(9, [Tab(FIRST)]))), [9])
        self.assertEqual(numbers(self.listed(Window(9, [Tab(FIRST)]), Window(7, [Tab(FIRST)]))), [9])

    def test_of_two_that_live_in_a_window_the_later_tab_stays(self):
        rows = self.listed(Window(7, [Tab(FIRST), Tab(FIRST, selected=False)]))
        self.assertEqual([row[3] for row in rows], [2])

    def test_of_two_that_ended_the_newer_one_stays(self):
        self.assertEqual(numbers(self.listed(Window(7, [Tab(FIRST, [])]), Window(9, [Tab(FIRST, [])]))), [9])

    def test_a_second_tab_that_ended_is_asked_about_by_its_own_number(self):
        ended = Window(7, [Tab(SECOND), Tab(FIRST, [], selected=False)])
        self.assertEqual(numbers(self.listed(ended, Window(5, [Tab(FIRST)]))), [7, 5])


class BusyTests(ScriptTestCase):
    def busy(self, programs, says):
        return self.listed(Window(7, [Tab(FIRST, programs, says)]))[0][5]

    def test_a_waiting_shell_is_idle(self):
        self.assertIs(self.busy(["login", "-zsh"], False), False)
        self.assertIs(self.busy(["login", "fish"], False), False)

    def test_what_terminal_calls_busy_is_busy(self):
        self.assertIs(self.busy(["login", "-zsh", "sleep"], True), True)

    def test_a_shell_in_a_shell_is_busy(self):
        for inner in ("sh", "bash", "zsh", "ksh", "csh", "tcsh", "dash", "fish"):
            self.assertIs(self.busy(["login", "-zsh", inner], False), True, inner)
        self.assertIs(self.busy(["zsh", "sh"], False), True)

    def test_a_login_shells_own_helpers_are_idle(self):
        self.assertIs(self.busy(["login", "-zsh", "-zsh", "gitstatusd"], False), False)
        self.assertIs(self.busy(["login", "-bash", "python"], False), False)

    def test_a_shell_under_a_program_with_a_hyphen_is_idle(self):
        self.assertIs(self.busy(["login-tool", "zsh"], False), False)

    def test_a_tab_that_ended_is_idle(self):
        self.assertIs(self.busy([], False), False)

    def test_what_terminal_does_not_tell_is_busy(self):
        self.given(two_windows())
        self.fail_at(-10000, "busy")
        self.assertEqual([row[5] for row in self.call("listSessions")], [True, True])
        self.assertIs(self.busy(["login", "-zsh"], MISSING), True)

    def test_without_a_list_of_programs_terminals_word_holds(self):
        self.given(two_windows())
        self.fail_at(-10000, "processes")
        self.assertEqual([row[5] for row in self.call("listSessions")], [False, True])


class ErrorTests(ScriptTestCase):
    def test_the_four_errors_of_what_is_not_there_leave_a_window_out(self):
        for number in (-10000, -1728, -1719, -1708):
            self.given(two_windows())
            self.fail_at(number, "count")
            self.assertEqual(self.call("listSessions"), [[]], number)
            self.given(two_windows())
            self.fail_at(number, "tty")
            self.assertEqual(self.call("listSessions"), [[]], number)

    def test_any_other_error_is_not_taken_for_an_empty_terminal(self):
        for number in (-10004, -1742, -1743, -1744, -1712, -609, -600, -128, -50):
            for asked in ("count", "tty", "selected", "name", "busy", "processes"):
                self.given(two_windows())
                self.fail_at(number, asked)
                self.assert_error(number, "listSessions")

    def test_a_window_that_closes_meanwhile_is_left_out(self):
        def close(desktop, verb, arguments):
            if verb == "count" and arguments[1].key == 42:
                desktop.windows = [window for window in desktop.windows if window.id != 42]

        self.given(two_windows()).before_event = close
        self.assertEqual(numbers(self.call("listSessions")), [41])

    def test_a_terminal_that_hangs_in_a_tab_costs_five_seconds(self):
        for asked in ("count", "tty", "selected", "name", "busy", "processes", "custom title"):
            behind = Window(43, [Tab("/dev/ttys003"), Tab("/dev/ttys004", selected=False)])
            self.given([behind])

            def hang(desktop, verb, arguments):
                if asked in (verb, arguments[0]):
                    desktop.hanging = TERMINAL

            self.desktop.before_event = hang
            self.assert_error(-1712, "listSessions")
            self.assert_takes(5)


class CostTests(ScriptTestCase):
    def test_a_tab_costs_six_events_and_a_listing_one_more(self):
        self.listed(*(Window(100 + tab, [Tab(f"/dev/ttys{tab:03}")]) for tab in range(20)))
        self.assertEqual(len(self.desktop.events), 1 + 20 * 6)


if __name__ == "__main__":
    unittest.main()
