"""The helper as a child process, launched as MCP clients launch it: pipes, and hardly any environment."""

import contextlib
import json
import os
import pathlib
import select
import shutil
import subprocess
import tempfile
import time

PROGRAMS = pathlib.Path(os.environ["VELMORA_BIN"])
PATIENCE_SECONDS = 20
# How long an end may take. The instrumented programs of the sanitizers get more, for what they check at the end.
PROMPT_SECONDS = float(os.environ.get("VELMORA_PROMPT_SECONDS", "1"))


class Folder:
    """A folder of a test's own, short enough for socket paths, removed with all that is in it."""

    def __init__(self):
        self.path = pathlib.Path(tempfile.mkdtemp(prefix="velmora-mcp-", dir="/tmp"))

    def close(self):
        shutil.rmtree(self.path, ignore_errors=True)


def scrubbed_environment(folder, **more):
    """What clients leave a program that they launch."""
    return {"HOME": str(folder), "PATH": "/usr/bin:/bin", "SHELL": "/bin/sh", "TERM": "xterm-256color",
            "USER": "tester", **more}


def environment_in(folder):
    """The same, and what keeps the program away from the person's own application."""
    return scrubbed_environment(folder, XDG_RUNTIME_DIR=str(folder))


class NoAnswer(Exception):
    """Nothing came in time, or the output ended."""


class HelperProcess:
    def __init__(self, environment):
        self.process = subprocess.Popen([PROGRAMS / "velmora"], env=environment, cwd=environment["HOME"],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self._unread = b""

    def write(self, data):
        self.process.stdin.write(data)
        self.process.stdin.flush()

    def send(self, message):
        self.write(json.dumps(message, ensure_ascii=False).encode() + b"\n")

    def read_line(self, seconds=PATIENCE_SECONDS):
        """The next line of the output, as text without its end."""
        end = time.monotonic() + seconds
        while b"\n" not in self._unread:
            if not select.select([self.process.stdout], [], [], max(0, end - time.monotonic()))[0]:
                raise NoAnswer(f"no line within {seconds} seconds; unfinished: {self._unread[:200]!r}")
            data = os.read(self.process.stdout.fileno(), 1 << 16)
            if not data:
                raise NoAnswer(f"the output ended; unfinished: {self._unread[:200]!r}")
            self._unread += data
        line, self._unread = self._unread.split(b"\n", 1)
        return line.decode()

    def end(self):
        """Closes the input. The exit status, what was still written to the output, and to standard error."""
        self.process.stdin.close()
        try:
            status = self.process.wait(PROMPT_SECONDS)
        except subprocess.TimeoutExpired:
            status = None
            self.process.kill()
            self.process.wait()
        rest = self._unread + self.process.stdout.read()
        errors = self.process.stderr.read()
        self.close()
        return status, rest.decode(), errors.decode()

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        for stream in (self.process.stdin, self.process.stdout, self.process.stderr):
            with contextlib.suppress(BrokenPipeError):  # what was not yet written to it
                stream.close()
