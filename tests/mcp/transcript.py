"""Replays a transcript against the real helper.

A transcript is a text file of paragraphs. After each paragraph the replayer sends a ping of its own, and its answer
must be the very next line: so every paragraph proves that nothing more was said and that the next message still works.
At the end the input is closed: the helper must end with status 0, with nothing more to say on either output.

    # a comment
    > text      sends the text and a line end
    >> text     sends the text alone; Python's backslash escapes make other bytes, {x*9} is nine of x
    < text      the next line of the output
    <* text     the next lines of the output, a run of them in any order
    ! command   something else happens:
      ! application answers     a made-up application that answers every call at once
      ! application silent      one that answers only when released
      ! application gone        there is none, or none any more (so it begins)
      ! received 2              two more calls have reached the application
      ! release                 the application answers what it has received
      ! extended                the helper ends, and is launched again in the extended form
      ! hangup                  a connection to the application has been given up
      ! end                     the input is closed; only answers may follow

In an expected line <uuid>, <number>, <string> (without its quotes) and <any> stand for any such text; all else is
compared byte for byte.
"""

import contextlib
import pathlib
import re

from fake_application import FakeApplication
from helper_process import PATIENCE_SECONDS, Folder, HelperProcess, environment_in

PLACEHOLDERS = {"<uuid>": r"[0-9A-F]{8}(?:-[0-9A-F]{4}){3}-[0-9A-F]{12}", "<number>": r"-?[0-9]+(?:\.[0-9]+)?",
                "<string>": r'(?:[^"\\]|\\.)*', "<any>": ".*"}


class Mismatch(AssertionError):
    pass


def pattern_of(expected):
    parts = re.split("(" + "|".join(PLACEHOLDERS) + ")", expected)
    return re.compile("".join(PLACEHOLDERS.get(part) or re.escape(part) for part in parts), re.DOTALL)


def bytes_of(text):
    """The bytes of a `>>` line."""
    repeated = re.sub(r"\{(.+?)\*(\d+)\}", lambda match: match[1] * int(match[2]), text)
    return repeated.encode().decode("unicode_escape").encode("latin-1")


class Replay:
    """One transcript over one helper."""

    def __init__(self, folder, patience):
        self._folder = folder
        self._patience = patience
        self._application = None
        self._helper = HelperProcess(environment_in(folder))
        self._any_order = []
        self._pings = 0

    def play(self, text):
        for number, line in enumerate([*text.splitlines(), ""], start=1):
            try:
                self._step(line)
            except Exception as error:
                error.add_note(f"line {number}: {line[:200]}")
                raise
        self._end()

    def _end(self):
        end = self._helper.end()
        if end != (0, "", ""):
            raise Mismatch(f"at the end: {end}")

    def close(self):
        self._helper.close()
        self._command("application gone")

    def _step(self, line):
        mark, _, rest = line.partition(" ")
        if mark != "<*" and self._any_order:
            self._expect_any_order()
        if mark == ">":
            self._helper.write(rest.encode() + b"\n")
        elif mark == ">>":
            self._helper.write(bytes_of(rest))
        elif mark == "<":
            self._expect(rest, self._helper.read_line(self._patience))
        elif mark == "<*":
            self._any_order.append(rest)
        elif mark == "!":
            self._command(rest)
        elif line == "":
            if not self._helper.process.stdin.closed:
                self._ping()
        elif mark != "#":
            raise ValueError(f"no such line is known: {line}")

    def _expect(self, expected, line):
        if not pattern_of(expected).fullmatch(line):
            raise Mismatch(f"\nexpected: {expected[:2000]}\nread:     {line[:2000]}")

    def _expect_any_order(self):
        waiting, self._any_order = self._any_order, []
        while waiting:
            line = self._helper.read_line(self._patience)
            found = next((each for each in waiting if pattern_of(each).fullmatch(line)), None)
            if found is None:
                raise Mismatch(f"\nexpected one of: {waiting}\nread: {line[:2000]}")
            waiting.remove(found)

    def _ping(self):
        self._pings += 1
        id = f"next-message-{self._pings}"
        self._helper.write(f'{{"jsonrpc":"2.0","id":"{id}","method":"ping"}}\n'.encode())
        self._expect(f'{{"jsonrpc":"2.0","id":"{id}","result":{{}}}}', self._helper.read_line(self._patience))

    def _command(self, command):
        name, _, argument = command.partition(" ")
        if name == "application":
            if self._application:
                self._application.close()
                self._application = None
            if argument != "gone":
                self._application = FakeApplication(self._folder, silent={"answers": False, "silent": True}[argument])
        elif name == "received":
            for _ in range(int(argument)):
                self._application.next_request()
        elif name == "release":
            self._application.release()
        elif name == "extended":
            self._end()
            self._helper = HelperProcess({**environment_in(self._folder), "VELMORA_EXTENDED": "1"})
        elif name == "end":
            self._helper.process.stdin.close()
        elif name == "hangup":
            self._application.wait_for_hangup()
        else:
            raise ValueError(f"no such command is known: {command}")


def replay(file):
    """Throws when the helper says anything else than the transcript in `file`."""
    play(pathlib.Path(file).read_text())


def play(text, patience=PATIENCE_SECONDS):
    with contextlib.closing(Folder()) as folder, contextlib.closing(Replay(folder.path, patience)) as each:
        each.play(text)
