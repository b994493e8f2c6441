"""Uses the window as a screen reader does: finds its controls by role and name on the accessibility bus, presses and
toggles them there, and reads what came of it. Give it the offline application. Run it under a display and a session bus
of its own: xvfb-run -a dbus-run-session -- /usr/bin/python3 accessibility_test.py PROGRAM"""

import os
import subprocess
import sys

import pyatspi

from accessible_window import AccessibleWindow, eventually


def sessions(window):
    return sorted(row.name for row in window.see("list", "Sessions"))


def run(window):
    for section in ("Dashboard", "Sessions", "History", "Settings", "Help"):
        window.see("page tab", section)

    window.press("push button", "Pause MCP changes")
    window.see("label", "Bridge: Paused")
    window.press("push button", "Resume MCP changes")
    window.see("label", "Bridge: Active")

    window.press("page tab", "Sessions")
    everything = sessions(window)
    assert len(everything) == 5, everything
    window.act("check box", "Show busy", "Toggle")
    eventually(lambda: len(sessions(window)) == 3, "busy sessions are hidden")
    window.press("check box", "Show busy")
    eventually(lambda: sessions(window) == everything, "busy sessions are back")

    window.press("combo box", "Permission")
    assert window.see("list item", "readOnly").description == "Agents read only"
    window.press("list item", "blocked")
    eventually(lambda: window.see("combo box", "Permission").description == "blocked", "the session is blocked")

    window.press("page tab", "Help")
    window.press("combo box", "Language")
    window.press("list item", "한국어")
    window.see("heading", "설치 위치")
    window.press("push button", "설치 경로 복사")
    window.see("alert", "복사됨")

    window.press("page tab", "History")
    window.press("push button", "Clear")
    window.see("heading", "Delete Velmora history?")
    window.press("push button", "Delete History")
    window.see("label", "No requests yet")


def main():
    environment = os.environ | {"QT_QPA_PLATFORM": "xcb", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
    pyatspi.Registry.getDesktop(0)  # starts the accessibility bus, before the application looks for it
    program = subprocess.Popen([sys.argv[1]], env=environment)
    try:
        run(AccessibleWindow("velmora-app-offline"))
    finally:
        program.terminate()
        program.wait()


if __name__ == "__main__":
    main()
