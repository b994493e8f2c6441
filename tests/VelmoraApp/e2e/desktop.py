"""The desktop that a test has for itself, and the scenes played on it."""

import os
import pathlib
import signal
import subprocess
import tempfile

import pyatspi

from accessible_window import eventually

checks = 0


def check(claim, holds):
    global checks
    assert holds, claim
    checks += 1
    print(f"ok {claim}", flush=True)


class Desktop:
    """A home, a tmux server and a window manager of the test's own; `end` takes all of it down. `introduced`: the
    person has been through the introduction."""

    def __init__(self, programs, home, introduced):
        self.programs = programs
        self.home = home
        self.environment = {
            name: os.environ[name]
            for name in ("PATH", "DISPLAY", "XAUTHORITY", "DBUS_SESSION_BUS_ADDRESS")
            if name in os.environ
        } | {
            # Nothing of the machine's own is asked for, its package manager least of all.
            "DBUS_SYSTEM_BUS_ADDRESS": os.environ["DBUS_SESSION_BUS_ADDRESS"],
            "HOME": home,
            "XDG_RUNTIME_DIR": home,
            "XDG_DATA_HOME": f"{home}/data",
            "XDG_CONFIG_HOME": f"{home}/config",
            "TMUX_TMPDIR": home,
            "SHELL": "/bin/sh",
            "LC_ALL": "C.UTF-8",
            "QT_QPA_PLATFORM": "xcb",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        }
        self.user_defaults = pathlib.Path(home, "config/Velmora/Velmora.conf")
        self.settings = pathlib.Path(home, "data/Velmora/settings.json")
        if introduced:
            self.user_defaults.parent.mkdir(parents=True)
            self.user_defaults.write_text("[General]\nonboardingCompleted=true\n")
        # The first synthetic key of a display may go to nobody, as one in four did on Debian 13. Nothing waits for this one.
        subprocess.run(["xdotool", "key", "Shift_L"], env=self.environment, check=True)
        self.children = [subprocess.Popen(["openbox"], env=self.environment, stderr=subprocess.DEVNULL)]
        self.tmux("-f", "/dev/null", "new-session", "-d", "-x", "100", "-y", "30", "-s", "work")
        self.tmux_server = int(self.tmux("display-message", "-p", "#{pid}"))

    def tmux(self, *arguments):
        command = ["tmux", *arguments]
        return subprocess.run(command, env=self.environment, check=True, capture_output=True, text=True).stdout.strip()

    def start(self, **variables):
        app = subprocess.Popen([self.programs / "velmora-app"], env=self.environment | variables)
        self.children.append(app)
        return app

    def type(self, *arguments):
        """Into the window: xdotool's words for keys."""
        activate = ["xdotool", "search", "--onlyvisible", "--name", "^Velmora$", "windowactivate", "--sync"]
        subprocess.run(activate, env=self.environment, check=True)
        subprocess.run(["xdotool", *arguments], env=self.environment, check=True)

    def close_window(self):
        """As the window manager's own key does, which goes to the window in front. It is not brought there once more: while
        the focus is on its way, the key goes to nobody."""
        eventually(self.window_is_in_front, "the window is in front")
        subprocess.run(["xdotool", "key", "alt+F4"], env=self.environment, check=True)

    def window_is_visible(self):
        search = ["xdotool", "search", "--onlyvisible", "--name", "^Velmora$"]
        return subprocess.run(search, env=self.environment, capture_output=True, check=False).stdout != b""

    def window_is_in_front(self):
        search = ["xdotool", "getactivewindow", "getwindowname"]
        return subprocess.run(search, env=self.environment, capture_output=True, check=False).stdout == b"Velmora\n"

    def end(self):
        os.kill(self.tmux_server, signal.SIGCONT)
        self.tmux("kill-server")
        for child in self.children:
            if child.poll() is None:
                child.kill()
            child.wait()


def play(programs, scenes, introduced):
    """Each scene on a new desktop; counts the checks at the end."""
    pyatspi.Registry.getDesktop(0)  # starts the accessibility bus, before the application looks for it
    for scene in scenes:
        with tempfile.TemporaryDirectory(prefix="velmora-e2e-", ignore_cleanup_errors=True) as home:
            desktop = Desktop(programs, home, introduced)
            try:
                scene(desktop)
            finally:
                desktop.end()
    print(f"{checks} passed, 0 failed")
