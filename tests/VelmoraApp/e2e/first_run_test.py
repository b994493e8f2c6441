"""The first start of the application as a user has it: the introduction, what it stores and when, and that it does
not come again. Run it under a display and a session bus of its own:
xvfb-run -a dbus-run-session -- /usr/bin/python3 first_run_test.py FOLDER_OF_THE_PROGRAMS"""

import configparser
import json
import pathlib
import signal
import sys

from accessible_window import AccessibleWindow, eventually
from desktop import check, play
from helper_client import HelperClient

programs = pathlib.Path(sys.argv[1])

SELECTIVE = "Selective: existing sessions start read-only"
TITLES = ["Velmora Bridge", "tmux automation", "Session policy", "Local MCP connection"]


def stored_defaults(desktop):
    file = configparser.ConfigParser()
    file.optionxform = str
    file.read(desktop.user_defaults)
    return dict(file["General"]) if "General" in file else {}


def stored_settings(desktop):
    return json.loads(desktop.settings.read_text())["settings"] if desktop.settings.exists() else {}


def nothing_is_stored(desktop):
    return not stored_defaults(desktop) and "sessionPolicy" not in stored_settings(desktop)


def policy_is_saved(desktop):
    return eventually(lambda: stored_settings(desktop).get("sessionPolicy") == "selective", "the policy is saved")


def end(app):
    app.send_signal(signal.SIGTERM)
    check("a termination ends it well", app.wait(10) == 0)


def is_at(window, step):
    return window.see("heading", TITLES[step])


def permission_of_the_session(window):
    window.press("page tab", "Sessions")
    return window.see("combo box", "Permission").description


def by_the_accessibility_bus(desktop):
    app = desktop.start()
    window = AccessibleWindow("Velmora")
    is_at(window, 0)
    check("the introduction stands in place of the sections", not window.shows("page tab", "Dashboard"))
    client = HelperClient(programs / "velmora", desktop.environment)
    check("clients are served meanwhile", client.code("terminal_status") == "ok")
    found = client.call("terminal_list_sessions")["data"]["sessions"][0]
    check("a session is read-only until the user has chosen", found["permission"] == "readOnly")
    sent = client.code("terminal_send_command", sessionId=found["sessionId"], command="echo too early")
    check("and changes are paused", sent == "MCP_PAUSED")
    for step in range(3):
        is_at(window, step)
        window.see("label", f"Step {step + 1} of 4")
        if TITLES[step] == "Session policy":
            window.press("radio button", SELECTIVE)
        check(f"step {step + 1} stores nothing", nothing_is_stored(desktop))
        window.press("push button", "Continue")
    is_at(window, 3)
    window.press("push button", "Test the connection")
    window.see("label", "The helper reached Velmora. This is the answer that it got:")
    answer = window.see("text", "Answer").queryText().getText(0, -1)
    check("the helper is tested, and the user sees its answer", "paused" in answer and "available, 1 window" in answer)
    window.press("push button", "Back")
    window.press("push button", "Continue")
    check("nor does the last", nothing_is_stored(desktop))
    window.press("push button", "Finish")
    window.see("page tab", "Dashboard")
    check("finished, the sections are there", not window.shows("push button", "Finish"))
    expected = {"onboardingCompleted": "true", "sessionPolicy": "selective"}
    check("the choice is among the user's defaults", stored_defaults(desktop) == expected)
    check("and in the settings", policy_is_saved(desktop))
    check("a session that was there is read-only", permission_of_the_session(window) == "readOnly")
    session = client.call("terminal_list_sessions")["data"]["sessions"][0]["sessionId"]
    sent = client.code("terminal_send_command", sessionId=session, command="echo never")
    check("so a command is refused", sent == "SESSION_NOT_ALLOWED")
    check("and reading is not", client.code("terminal_read_output", sessionId=session) == "ok")
    client.close()
    end(app)

    app = desktop.start()
    window = AccessibleWindow("Velmora")
    window.see("page tab", "Dashboard")
    check("a second start needs no introduction", not window.shows("push button", "Continue"))
    check("and keeps the policy", permission_of_the_session(window) == "readOnly")
    window.press("page tab", "Help")
    window.see("heading", "2. Register the stdio Helper")
    check("the help is in English", window.see("combo box", "Language").description == "English")
    end(app)

    app = desktop.start(LC_ALL="ko_KR.UTF-8")
    window = AccessibleWindow("Velmora")
    window.press("page tab", "도움말")
    window.see("heading", "2. stdio 헬퍼 등록")
    check("in a Korean session it is in Korean", window.see("combo box", "언어").description == "한국어")
    end(app)


def by_the_keyboard(desktop):
    desktop.settings.parent.mkdir(parents=True)
    desktop.settings.write_text(json.dumps({"schemaVersion": 1, "settings": {"retentionDays": 30}}))
    app = desktop.start()
    window = AccessibleWindow("Velmora")
    is_at(window, 0)
    desktop.type("key", "Return")
    is_at(window, 1)
    desktop.type("key", "Escape")
    is_at(window, 0)
    desktop.type("key", "Escape")
    check("escape leaves the window open", desktop.window_is_visible())
    desktop.type("key", "Return", "Return", "Down", "Return")
    is_at(window, 3)
    end(app)
    check("quitting leaves the introduction due", nothing_is_stored(desktop))

    app = desktop.start()
    window = AccessibleWindow("Velmora")
    is_at(window, 0)
    check("it comes again", app.poll() is None)
    desktop.close_window()
    window.see("heading", "Close Velmora?")
    window.press("push button", "Quit Velmora")
    check("closing the window ends it well", app.wait(10) == 0)
    check("and leaves the introduction due", nothing_is_stored(desktop))

    app = desktop.start()
    window = AccessibleWindow("Velmora")
    is_at(window, 0)
    desktop.type("key", "Return", "Return", "Down", "Return", "Return")
    window.see("page tab", "Dashboard")
    window.see("label", "Bridge: Active")
    check("the policy is saved", policy_is_saved(desktop))
    check("settings that were there stay", stored_settings(desktop)["retentionDays"] == 30)
    check("a session that was there is read-only", permission_of_the_session(window) == "readOnly")
    end(app)


def the_safe_policy_holds_for_what_agents_listed_before(desktop):
    app = desktop.start()
    window = AccessibleWindow("Velmora")
    is_at(window, 0)
    client = HelperClient(programs / "velmora", desktop.environment)
    session = client.call("terminal_list_sessions")["data"]["sessions"][0]["sessionId"]
    for _ in range(3):
        window.press("push button", "Continue")
    window.press("push button", "Finish")
    window.see("label", "Bridge: Active")
    sent = client.code("terminal_send_command", sessionId=session, command="echo $((40+2))")
    check("chosen as safe, the session that was listed before takes a command", sent == "ok")
    client.close()
    end(app)


if __name__ == "__main__":
    scenes = [by_the_accessibility_bus, by_the_keyboard, the_safe_policy_holds_for_what_agents_listed_before]
    play(programs, scenes, introduced=False)
