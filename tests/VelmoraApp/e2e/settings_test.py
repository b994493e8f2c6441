"""The settings as a user changes them: each control by the accessibility bus, and what each leaves in the settings
file, the user's defaults and the autostart folder. Run it under a display and a session bus of its own:
xvfb-run -a dbus-run-session -- /usr/bin/python3 settings_test.py FOLDER_OF_THE_PROGRAMS"""

import json
import pathlib
import signal
import subprocess
import sys

from accessible_window import AccessibleWindow, eventually
from desktop import check, play

programs = pathlib.Path(sys.argv[1])


def stored(desktop, key):
    return json.loads(desktop.settings.read_text())["settings"][key] if desktop.settings.exists() else None


def comes_to_store(desktop, key, value):
    return eventually(lambda: stored(desktop, key) == value, f"{key} is {value}")


def general(desktop, window):
    entry = pathlib.Path(desktop.home, "config/autostart/app.velmora.Velmora.desktop")
    check("nothing starts at login", not entry.exists())
    window.act("check box", "Launch at login", "Toggle")
    eventually(entry.exists, "there is an autostart entry")
    check("the entry starts this program", str((programs / "velmora-app").resolve()) in entry.read_text())
    subprocess.run(["desktop-file-validate", entry], check=True)
    window.act("check box", "Launch at login", "Toggle")
    eventually(lambda: not entry.exists(), "the entry is gone")
    check("the entry is gone again", True)

    window.act("check box", "Show Velmora in the tray", "Toggle")
    eventually(lambda: "menuBarEnabled=false" in desktop.user_defaults.read_text(), "the tray is switched off")
    check("the tray switch is among the user's defaults", True)
    check("the permissions name tmux", window.holds("label", "tmux"))
    check("and say that it is there", window.holds("label", "A tmux server of yours is running, and Velmora may use it."))
    check("a program that no package holds has no updates", window.holds("push button", "Check for Updates…"))


def language(desktop, window):
    window.scroll_to("combo box", "Language")
    window.press("combo box", "Language")
    window.press("list item", "한국어")
    for section in ("대시보드", "세션", "기록", "설정", "도움말"):
        window.see("page tab", section)
    check("the whole window speaks Korean at once", window.holds("check box", "로그인할 때 실행"))
    check("and no English", not window.holds("check box", "Launch at login"))
    check("the language is among the user's defaults", "language=ko" in desktop.user_defaults.read_text())
    window.press("combo box", "언어")
    window.press("list item", "English")
    window.see("page tab", "Dashboard")
    check("and English again", window.see("combo box", "Language").description == "English")


def privacy(desktop, window):
    window.press("page tab", "Privacy")
    window.act("check box", "Persist request metadata", "Toggle")
    check("metadata is kept", comes_to_store(desktop, "persistentHistoryEnabled", True))
    before = desktop.settings.read_text()
    window.press("check box", "Store command bodies")
    window.see("heading", "Sensitive data warning")
    window.press("push button", "Cancel")
    eventually(lambda: not window.shows("heading", "Sensitive data warning"), "the warning is gone")
    check("a cancelled warning leaves the file alone", desktop.settings.read_text() == before)
    window.press("check box", "Store command bodies")
    window.press("push button", "Enable")
    check("command bodies are kept", comes_to_store(desktop, "storeCommandBody", True))
    window.press("check box", "Persist request metadata")
    check("without metadata nothing is kept", comes_to_store(desktop, "persistentHistoryEnabled", False))
    check("command bodies least of all", stored(desktop, "storeCommandBody") is False)
    window.scroll_to("radio button", "Selective: existing sessions start read-only")
    window.press("radio button", "Selective: existing sessions start read-only")
    check("the policy is kept", comes_to_store(desktop, "sessionPolicy", "selective"))
    window.scroll_to("push button", "Make the 1 known session read-only now")
    window.press("push button", "Make the 1 known session read-only now")
    eventually(lambda: "Make the 1 known session read-only now" not in window.names("push button"), "it is done")
    window.press("page tab", "Sessions")
    check("the session that was known is read-only", window.see("combo box", "Permission").description == "readOnly")
    window.press("page tab", "Settings")


def connection(window):
    window.press("page tab", "MCP Connection")
    helper = str((programs / "velmora").resolve())
    text = window.see("text", "Configuration").queryText()
    lines = text.getText(0, text.characterCount).replace("\N{PARAGRAPH SEPARATOR}", "\n")
    shown = json.loads(lines)
    check("the configuration names the helper", shown == {"mcpServers": {"terminal": {"command": helper}}})
    window.press("push button", "Copy configuration")
    window.see("push button", "Copied")
    check("the button says that it copied", True)


def settings_by_the_accessibility_bus(desktop):
    app = desktop.start()
    window = AccessibleWindow("Velmora")
    window.press("page tab", "Settings")
    general(desktop, window)
    language(desktop, window)
    privacy(desktop, window)
    connection(window)
    app.send_signal(signal.SIGTERM)
    check("a termination ends it well", app.wait(10) == 0)


if __name__ == "__main__":
    play(programs, [settings_by_the_accessibility_bus], introduced=True)
