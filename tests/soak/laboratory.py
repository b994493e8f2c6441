"""A user's machine in a folder: a home, a tmux server and a bridge.

Everything that is started here inherits the variable VELMORA_SOAK, by which run.py finds and ends what is left over.
"""

import collections
import json
import os
import pathlib
import re
import select
import shutil
import signal
import subprocess
import tempfile

from clients import PATIENCE, Helper, SocketClient, eventually

PROGRAMS = pathlib.Path(os.environ.get("VELMORA_BIN", "build/release/bin")).resolve()
ENTRY = re.compile(r"(\d+) (%\d+) (%\d+)")
SETTINGS = {
    "allowBusySessionInput": False, "deleteOnAppExit": True, "launchAtLoginEnabled": False,
    "maskSensitivePatterns": True, "maximumRecordCount": 1000, "menuBarEnabled": True,
    "outputPreviewMaxCharacters": 2000, "persistentHistoryEnabled": False, "retentionDays": 7,
    "sessionPolicy": "safe", "storeCommandBody": False, "storeOutputPreview": False,
}
KEPT_HISTORY = {"persistentHistoryEnabled": True, "storeCommandBody": True, "deleteOnAppExit": False}


class Laboratory:
    def __init__(self, shell="/bin/bash", **settings):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="velmora-soak-", dir="/tmp"))
        self.home = self.root / "home"
        self.runtime = self.root / "run"
        self.data = self.root / "data" / "Velmora"
        self.ledger = self.root / "ledger"
        for folder in (self.home, self.runtime, self.data, self.root / "tmux"):
            folder.mkdir(mode=0o700, parents=True)
        self.environment = {
            "HOME": str(self.home), "PATH": "/usr/bin:/bin", "SHELL": shell, "TERM": "xterm-256color", "USER": "tester",
            "LANG": "C.UTF-8", "XDG_RUNTIME_DIR": str(self.runtime), "XDG_DATA_HOME": str(self.root / "data"),
            "XDG_CONFIG_HOME": str(self.root / "config"), "TMUX_TMPDIR": str(self.root / "tmux"),
            "VELMORA_SOAK": os.environ.get("VELMORA_SOAK", "alone"),
        }
        (self.home / ".bash_profile").write_text("PS1='$ '\nHISTFILE=\n")
        (self.home / ".zshrc").write_text("PS1='%# '\n")
        self.ledger.touch()
        self.errors = self.root / "bridge.err"
        self.bridge = None
        self._children = []
        if settings:
            self.configure(**settings)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for child in self._children:
            if child.poll() is None:
                child.send_signal(signal.SIGCONT)
                child.kill()
                child.wait()
        if server := self.tmux_server():
            os.kill(server, signal.SIGKILL)
        subprocess.run(["umount", self.data], check=False, stderr=subprocess.DEVNULL)
        shutil.rmtree(self.root, ignore_errors=True)

    def configure(self, **settings):
        (self.data / "settings.json").write_text(json.dumps({"schemaVersion": 1, "settings": SETTINGS | settings}))

    # The bridge

    @property
    def socket(self):
        return self.runtime / "app.velmora.Velmora" / "control-v1.sock"

    def launch(self, program, *arguments, **options):
        """A child process; its standard error goes to a file unless it is given another place."""
        options.setdefault("stdout", subprocess.DEVNULL)
        with open(self.errors, "ab") as errors:
            options.setdefault("stderr", errors)
            child = subprocess.Popen([PROGRAMS / program, *arguments], env=options.pop("environment", self.environment),
                                     cwd=self.home, **options)
        self._children.append(child)
        return child

    def start_bridge(self, **options):
        """Started and ready; raises when it ends instead."""
        bridge = self.launch("velmora-headless", stdout=subprocess.PIPE, **options)
        self.bridge = bridge
        if not select.select([bridge.stdout], [], [], PATIENCE)[0] or not bridge.stdout.readline():
            raise RuntimeError(f"the bridge did not start: {self.said()[-300:]}")
        return bridge

    def stop_bridge(self, number=signal.SIGTERM):
        """The exit status, or None when it had to be killed."""
        self.bridge.send_signal(number)
        try:
            return self.bridge.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            self.bridge.kill()
            self.bridge.wait()
            return None

    def said(self):
        return self.errors.read_text() if self.errors.exists() else ""

    def history(self):
        """The records of the file; none without one. Raises when it is not whole."""
        file = self.data / "history.json"
        return json.loads(file.read_text())["records"] if file.exists() else []

    # tmux

    def tmux(self, *arguments, check=True):
        done = subprocess.run(["tmux", "-f", "/dev/null", *arguments], env=self.environment, cwd=self.home, text=True,
                              capture_output=True, errors="replace", check=False, timeout=PATIENCE)
        if check and done.returncode != 0:
            raise RuntimeError(f"tmux {arguments}: {done.stderr}")
        return done.stdout.rstrip("\n")

    def tmux_server(self):
        """Its process id, without asking the server, which may be stopped; 0 without one."""
        mark = f"TMUX_TMPDIR={self.environment['TMUX_TMPDIR']}".encode()
        for folder in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if (folder / "comm").read_text().startswith("tmux: server") and mark in (folder / "environ").read_bytes():
                    return int(folder.name)
            except OSError:
                continue
        return 0

    def new_pane(self, *command, environment=(), width=120):
        """The id of a new session's pane."""
        variables = [part for pair in environment for part in ("-e", pair)]
        return self.tmux("new-session", "-d", "-P", "-F", "#{pane_id}", "-x", str(width), "-y", "40", *variables, *command)

    def screen(self, pane):
        return self.tmux("capture-pane", "-p", "-J", "-t", pane)

    def keys(self, pane, *keys):
        self.tmux("send-keys", "-t", pane, *keys)

    def types(self, pane, text):
        """Typed, without Return."""
        self.tmux("send-keys", "-t", pane, "-l", text)

    # Clients

    def sessions(self):
        return self.call("terminal_list_sessions")["data"]["sessions"]

    def session(self, pane):
        """The pane's session as the bridge lists it, or None."""
        tty = self.tmux("display-message", "-p", "-t", pane, "#{pane_tty}")
        return next((session for session in self.sessions() if session["tty"] == tty), None)

    def idle_session(self, pane):
        """The id of the pane's session, once it waits at its prompt."""
        def idle():
            session = self.session(pane)
            return session if session and not session["busy"] and self.screen(pane) else None
        if not (session := eventually(idle)):
            raise RuntimeError(f"{pane} is never idle: {self.screen(pane)}")
        return session["sessionId"]

    def client(self, **options):
        return SocketClient(self.socket, **options)

    def call(self, tool, seconds=PATIENCE, **arguments):
        """One call of a client of its own, straight to the socket."""
        client = self.client(seconds=seconds)
        try:
            return client.call(tool, **arguments)
        finally:
            client.close()

    def answers(self, seconds=3):
        """Whether somebody serves the helper."""
        try:
            done = subprocess.run([PROGRAMS / "velmora", "call", "terminal_status"], env=self.environment, timeout=seconds,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
            return done.returncode == 0
        except subprocess.TimeoutExpired:
            return False

    def helper(self):
        return Helper(self)

    # The ledger: each command appends its number, and says for which pane it was meant and in which it ran.

    def entry(self, number, pane):
        return f"echo {number} {pane} $TMUX_PANE >> {self.ledger}"

    def entries(self):
        """(number, meant for, ran in) of every command that ran, in order."""
        return [(int(entry[1]), entry[2], entry[3]) for entry in map(ENTRY.fullmatch, self._lines()) if entry]

    def odd_lines(self):
        """What else stands in the ledger."""
        return [line for line in self._lines() if not ENTRY.fullmatch(line)]

    def _lines(self):
        return self.ledger.read_text(errors="replace").splitlines()

    def runs(self):
        """How often each number ran."""
        return collections.Counter(number for number, _, _ in self.entries())


def resident_megabytes(process):
    for line in pathlib.Path(f"/proc/{process}/status").read_text().splitlines():
        if line.startswith("VmRSS:"):
            return int(line.split()[1]) / 1024
    return 0.0


def descriptors(process):
    return len(os.listdir(f"/proc/{process}/fd"))
