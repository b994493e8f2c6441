"""Updates as a user meets them: a check that nobody asked for, and one by the button. Run it under a display and a
session bus of its own:
xvfb-run -a dbus-run-session -- /usr/bin/python3 updates_test.py FOLDER_OF_THE_PROGRAMS"""

import pathlib
import signal
import sys

from accessible_window import AccessibleWindow, eventually
from desktop import check, play
from package_kit import UpdatableSystem
from status_notifier_host import StatusNotifierHost

programs = pathlib.Path(sys.argv[1])
FOUND = "Version 0.2.0-1 is available. Install it with your system's updates."


def note_what_is_opened(desktop):
    """In the place of the program by which a desktop opens addresses."""
    opener = pathlib.Path(desktop.home, "bin/xdg-open")
    opened = pathlib.Path(desktop.home, "opened")
    opener.parent.mkdir()
    opener.write_text(f'#!/bin/sh\nprintf "%s\\n" "$@" >>"{opened}"\n')
    opener.chmod(0o700)
    desktop.environment["PATH"] = f"{opener.parent}:{desktop.environment['PATH']}"
    return opened


def sees_the_last_check(window):
    """The application has its answers from PackageKit by then."""
    eventually(lambda: any(name.startswith("Last checked ") for name in window.names("label")), "when it was last checked")


def updates(desktop):
    opened = note_what_is_opened(desktop)
    system = UpdatableSystem()
    calls = system.package_kit.calls
    tray = StatusNotifierHost()
    app = desktop.start()
    window = AccessibleWindow("Velmora")
    eventually(tray.has_item, "the status item is there")
    check("PackageKit is left alone until somebody wants it", not calls)
    window.press("page tab", "Settings")
    sees_the_last_check(window)
    check("the settings ask whose the program is", calls[-1] == "SearchFiles")

    window.press("push button", "Check for Updates…")
    window.see("label", FOUND)
    check("the button refreshes, then looks", [call for call in calls[-4:] if "=" not in call] == ["RefreshCache", "GetUpdates"])
    check("and may ask for a password", calls[-2] == "interactive=true background=false")
    page = "appstream:app.velmora.Velmora"
    check("the software centre is shown", eventually(lambda: opened.read_text().split() == [page], page))
    check("nothing else tells of it", not system.notifications.shown)

    window.act("check box", "Check for updates automatically", "Toggle")
    told = eventually(lambda: system.notifications.shown, "a notification")
    check("a check of its own tells by a notification", told == [("Velmora", FOUND)])
    check("and asks for no password", calls[-2] == "interactive=false background=true")
    app.send_signal(signal.SIGTERM)
    check("a termination ends it well", app.wait(10) == 0)

    before = len(calls)
    app = desktop.start()
    window = AccessibleWindow("Velmora")
    eventually(lambda: len(calls) > before, "PackageKit is asked at the start")
    check("switched on, it is there from the start", calls[before + 1] == "SearchFiles")
    window.press("page tab", "Settings")
    sees_the_last_check(window)
    check("and looks once a day", "RefreshCache" not in calls[before:] and len(system.notifications.shown) == 1)
    app.send_signal(signal.SIGTERM)
    check("a termination ends it well", app.wait(10) == 0)


if __name__ == "__main__":
    play(programs, [updates], introduced=True)
