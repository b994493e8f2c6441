"""createWindow and closeWindow: a window of one's own, never one that was there before, and its end."""

import unittest

import desktop
from desktop import Tab, Window
from dictionary import TERMINAL
from scriptTesting import ScriptTestCase, one_window, two_windows
from values import Reference, ScriptError


class CreatingTests(ScriptTestCase):
    def test_opens_one_window_and_gives_its_row(self):
        self.given(two_windows())
        self.assertEqual(self.call("createWindow"), ["/dev/ttys101", 1001, 1, 1, "new", False, True])
        self.assertEqual(len(self.desktop.windows), 3)
        self.assertEqual(self.verbs().count("do script"), 1)

    def test_types_nothing(self):
        self.given(two_windows())
        self.call("createWindow")
        self.assertEqual(self.typed(), [[], [], []])

    def test_waits_for_a_tty(self):
        self.given(two_windows(), new_tty_takes=1.0)
        self.assertEqual(self.call("createWindow")[0], "/dev/ttys101")

    def test_a_window_that_never_gets_a_tty_is_an_error_in_time(self):
        self.given(two_windows(), new_tty_takes=1e9, event_takes=0)
        self.assert_error(-1728, "createWindow")
        self.assert_takes(50 * 0.1)

    def test_waits_for_the_shell(self):
        self.given(new_programs=((0, [], False), (0.8, ["login", "-zsh"], False)))
        self.call("createWindow")
        self.assertGreater(self.desktop.now, 0.8)

    def test_waits_for_what_the_start_up_files_run(self):
        self.given(new_programs=((0, ["login", "-zsh", "ssh-add"], True), (1.2, ["login", "-zsh"], False)))
        self.assertIs(self.call("createWindow")[5], False)
        self.assertGreater(self.desktop.now, 1.2)

    def test_a_shell_that_stays_busy_is_told_as_busy_in_time(self):
        self.given(new_programs=((0, ["login", "-zsh", "menu"], True),), event_takes=0)
        self.assertIs(self.call("createWindow")[5], True)
        self.assert_takes(20 * 0.1)

    def test_a_window_that_is_ready_costs_no_wait(self):
        self.given(two_windows(), new_programs=((0, ["login", "-zsh"], False),))
        self.call("createWindow")
        self.assertLess(self.desktop.now, 0.1)

    def test_a_tab_in_a_window_that_was_there_is_found(self):
        # "Prefer tabs: Always", in a Terminal whose windows hold several tabs.
        for number, place in ((41, 1), (43, 3)):
            several = Window(43, [Tab("/dev/ttys003"), Tab("/dev/ttys004", selected=False)])
            self.given([*two_windows(), several])

            def in_window(terminal, text, where):
                tabs = terminal.window(Reference("window", number)).tabs
                tabs.append(Tab("/dev/ttys200", selected=False))
                return Reference("tab", len(tabs), Reference("window", number))

            self.with_do_script(in_window)
            self.assertEqual(self.call("createWindow")[:3], ["/dev/ttys200", number, place])

    def test_a_tab_that_ended_with_the_same_tty_is_not_taken(self):
        self.given([*two_windows(), *one_window(Tab("/dev/ttys101", []))])
        self.assertEqual(self.call("createWindow")[1], 1001)

    def test_a_tab_that_ended_is_not_taken_when_the_new_one_is_not_listed(self):
        def unlisted(terminal, text, where):
            return Reference("tab", 1, Reference("window", 7))

        ended = Tab("/dev/ttys101", [])
        for windows in ([*two_windows(), *one_window(ended)], [*one_window(ended), *two_windows()]):
            self.given(windows)
            self.with_do_script(unlisted)
            self.assert_error(-1728, "createWindow")

    def test_a_terminal_that_hangs_costs_ten_seconds(self):
        def hang(terminal, verb, arguments):
            terminal.hanging = TERMINAL if verb == "do script" else None

        self.given(two_windows()).before_event = hang
        self.assert_error(-1712, "createWindow")
        self.assert_takes(10)

    def test_a_reference_that_hangs_costs_five_seconds(self):
        def hang(terminal, verb, arguments):
            terminal.hanging = TERMINAL if "do script" in self.verbs()[:-1] else None

        self.given(two_windows()).before_event = hang
        self.assert_error(-1712, "createWindow")
        self.assert_takes(5)

    def test_a_reference_that_is_not_there_yet_is_asked_again(self):
        def not_yet(terminal, verb, arguments):
            if verb == "get" and arguments[0] == "tty" and arguments[1].owner.key == 1001 and terminal.now < 0.5:
                raise ScriptError(-10000, "planted")

        self.given(two_windows()).before_event = not_yet
        self.assertEqual(self.call("createWindow")[1], 1001)

    def with_do_script(self, replacement):
        """Terminal answers "do script" this way."""
        verb = (TERMINAL, "do script")
        self.addCleanup(desktop.VERBS.__setitem__, verb, desktop.VERBS[verb])
        desktop.VERBS[verb] = replacement


class ColdStartTests(ScriptTestCase):
    def test_starts_terminal_and_opens_one_window(self):
        self.given(running=False)
        self.assertEqual(self.call("createWindow")[1], 1001)
        self.assertEqual(len(self.desktop.windows), 1)
        self.assertLess(self.desktop.now, 1.5)

    def test_a_window_of_last_time_is_not_taken_for_the_new_one(self):
        for count in (1, 2):
            restored = [Window(5 + place, [Tab(f"/dev/ttys00{place}", history="yesterday")]) for place in range(count)]
            self.given(running=False, restored=restored)
            self.assertEqual(self.call("createWindow")[1], 1001)

    def test_a_moment_in_which_the_system_does_not_see_terminal_hands_over_no_window(self):
        for moment in (0.018, 0.3):
            self.given(two_windows()[:1], unseen_until=moment)
            self.assertEqual(self.call("createWindow")[1], 1001)

    def test_a_slow_start_is_waited_for(self):
        self.given(running=False, start_takes=8)
        self.assertEqual(self.call("createWindow")[1], 1001)

    def test_a_terminal_that_does_not_start_is_an_error_in_time(self):
        self.given(running=False, start_takes=None)
        self.assert_error(-600, "createWindow")
        self.assert_takes(100 * (0.1 + 0.05) + 0.05)

    def test_a_start_that_hangs_costs_twenty_seconds(self):
        self.given(running=False, hanging=TERMINAL)
        self.assert_error(-1712, "createWindow")
        self.assert_takes(20)


class ClosingTests(ScriptTestCase):
    def test_a_closed_window_may_stay_in_the_list(self):
        for keeps_tab in (False, True):
            self.given(two_windows(), closed_keeps_tab=keeps_tab)
            self.assertIs(self.call("closeWindow", 41), True)
            self.assertEqual([window.visible for window in self.desktop.windows], [True, False])

    def test_a_closed_window_may_be_gone(self):
        def forget(terminal, verb, arguments):
            terminal.windows = [window for window in terminal.windows if window.visible]

        self.given(two_windows()).before_event = forget
        self.assertIs(self.call("closeWindow", 41), True)
        self.assertLess(self.desktop.now, 0.1)

    def test_a_window_over_which_terminal_asks_is_an_error(self):
        self.given(two_windows(), closing_asks=True)
        self.assert_error(1014, "closeWindow", 41)
        self.assert_takes(10 * 0.1)

    def test_a_window_that_takes_its_time_is_waited_for(self):
        def late(terminal, verb, arguments):
            if terminal.now > 0.6:
                terminal.windows = terminal.windows[1:] if terminal.windows[0].id == 41 else terminal.windows

        self.given(two_windows(), closing_asks=True).before_event = late
        self.assertIs(self.call("closeWindow", 41), True)

    def test_without_terminal_nothing_is_sent(self):
        self.given(running=False)
        self.assert_error(-600, "closeWindow", 41)
        self.assertEqual(self.desktop.events, [])

    def test_an_unknown_window_is_an_error(self):
        self.given(two_windows())
        self.assert_error(-1728, "closeWindow", 77)

    def test_a_terminal_that_hangs_costs_ten_seconds(self):
        self.given(two_windows(), hanging=TERMINAL)
        self.assert_error(-1712, "closeWindow", 41)
        self.assert_takes(10)


if __name__ == "__main__":
    unittest.main()
