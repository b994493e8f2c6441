"""An error before any event of any handler reaches the caller with its own number."""

import unittest

from dictionary import TERMINAL
from scriptTesting import FIRST_TAB, ScriptTestCase, two_windows
from values import ScriptError

CALLS = [
    ("bridgeStatus",),
    ("systemEventsStatus",),
    ("listSessions",),
    ("createWindow",),
    ("sendCommand", "x", *FIRST_TAB, False),
    ("sendKey", 36, 0, *FIRST_TAB, False),
    ("sendKey", 36, 2, *FIRST_TAB, False),
    ("readOutput", "visible", 10, *FIRST_TAB),
    ("readOutput", "history", 10, *FIRST_TAB),
    ("captureBounds", *FIRST_TAB),
    ("focusSession", *FIRST_TAB),
    ("closeWindow", 41),
]
# Consent refused, not given, refused by the system; Terminal gone; timed out; cancelled by the user.
NUMBERS = (-1743, -1744, -10004, -600, -609, -1712, -128)


class RefusalTests(ScriptTestCase):
    def test_an_error_before_any_event_reaches_the_caller(self):
        for call in CALLS:
            self.given(two_windows(), front=TERMINAL)
            self.call(*call)
            for position in range(len(self.desktop.events)):
                # All of them at the first event, one at each of the others.
                for number in NUMBERS if position == 0 else NUMBERS[position % len(NUMBERS) :][:1]:
                    self.given(two_windows(), front=TERMINAL)
                    self.desktop.before_event = self.error_at(position, number)
                    with self.subTest(call=call, event=position):
                        self.assert_error(number, *call)

    @staticmethod
    def error_at(position, number):
        def plant(desktop, verb, arguments):
            if len(desktop.events) == position + 1:
                raise ScriptError(number, "planted")

        return plant


if __name__ == "__main__":
    unittest.main()
