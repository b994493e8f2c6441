"""Who speaks to the bridge: a client on its socket, the helper of an MCP client, a person at a terminal."""

import collections
import fcntl
import json
import os
import socket
import struct
import subprocess
import termios
import threading
import time
import uuid

PATIENCE = 15  # seconds for what must happen at all


class Gone(Exception):
    """The other end closed before it answered."""


class NoAnswer(Exception):
    """Nothing came in time."""


def eventually(condition, seconds=PATIENCE, every=0.02):
    """What `condition` gives once it is true; its last value when the time is over."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value or time.monotonic() > end:
            return value
        time.sleep(every)


def outcome(answer):
    """"ok", or the error's code, with "/retryable" when it asks to be repeated."""
    if answer["ok"]:
        return "ok"
    return answer["error"]["code"] + ("/retryable" if answer["error"]["retryable"] else "")


def sentence(answer):
    return "" if answer["ok"] else answer["error"]["message"] + " " + answer["error"]["recoverySuggestion"]


def counted(things):
    """Equal things together, the most frequent first: "5 ok, 2 SESSION_BUSY"."""
    return ", ".join(f"{number} {thing}" for thing, number in collections.Counter(things).most_common()) or "none"


class SocketClient:
    """Speaks the local control protocol."""

    def __init__(self, path, seconds=PATIENCE):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(seconds)
        end = time.monotonic() + seconds
        while True:
            try:
                self.socket.connect(str(path))
                return
            except BlockingIOError:  # the queue is full
                if time.monotonic() > end:
                    raise
                time.sleep(0.002)

    def send(self, tool, **arguments):
        self.send_request({"protocolVersion": 1, "requestId": str(uuid.uuid4()).upper(), "operation": tool,
                           "client": {"name": "soak", "version": "1", "processId": os.getpid()}, "arguments": arguments})

    def send_request(self, request):
        payload = json.dumps(request).encode()
        self.socket.sendall(struct.pack(">I", len(payload)) + payload)

    def answer(self):
        length = struct.unpack(">I", self._take(4))[0]
        return json.loads(self._take(length))

    def call(self, tool, **arguments):
        self.send(tool, **arguments)
        return self.answer()

    def close(self):
        self.socket.close()

    def _take(self, size):
        data = b""
        while len(data) < size:
            try:
                part = self.socket.recv(size - len(data))
            except socket.timeout as error:
                raise NoAnswer(f"nothing within {self.socket.gettimeout()} s") from error
            except ConnectionError as error:
                raise Gone(str(error)) from error
            if not part:
                raise Gone(f"closed after {len(data)} of {size} bytes")
            data += part
        return data


class Helper:
    """The helper as an MCP client launches it. Calls may be under way side by side."""

    def __init__(self, laboratory):
        self.process = laboratory.launch("velmora", stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                         stderr=subprocess.DEVNULL)
        self._answers = {}
        self._arrived = threading.Condition()
        self._ended = False
        self._last = 0
        threading.Thread(target=self._read, daemon=True).start()
        self._write([{"id": 0, "method": "initialize", "params": {
            "protocolVersion": "2025-06-18", "capabilities": {}, "clientInfo": {"name": "soak", "version": "1"}}}])
        self.answer(0)
        self._write([{"method": "notifications/initialized"}])

    def begin(self, tool, **arguments):
        """Writes a call and gives its id."""
        return self.begin_all([(tool, arguments)])[0]

    def begin_all(self, calls):
        """Writes the calls in one piece and gives their ids."""
        ids = range(self._last + 1, self._last + 1 + len(calls))
        self._last += len(calls)
        self._write([{"id": id, "method": "tools/call", "params": {"name": tool, "arguments": arguments}}
                     for id, (tool, arguments) in zip(ids, calls)])
        return list(ids)

    def answer(self, id, seconds=60):
        return self.answer_and_time(id, seconds)[0]

    def answer_and_time(self, id, seconds=60):
        """The tool's own result (`ok` with `data`, or `error`) and when it arrived (time.monotonic)."""
        with self._arrived:
            self._arrived.wait_for(lambda: id in self._answers or self._ended, seconds)
            if id in self._answers:
                return self._answers.pop(id)
        raise Gone("the helper ended") if self._ended else NoAnswer(f"nothing within {seconds} s")

    def call(self, tool, **arguments):
        return self.answer(self.begin(tool, **arguments))

    def obedient(self, tool, **arguments):
        """Repeats the call as long as the answer asks for it, three times at most; all answers."""
        answers = [self.call(tool, **arguments)]
        while outcome(answers[-1]).endswith("/retryable") and len(answers) < 4:
            time.sleep(0.1)
            answers.append(self.call(tool, **arguments))
        return answers

    def close(self):
        self.process.stdin.close()
        self.process.wait(PATIENCE)

    def _write(self, messages):
        lines = "".join(json.dumps({"jsonrpc": "2.0"} | message) + "\n" for message in messages)
        self.process.stdin.write(lines.encode())
        self.process.stdin.flush()

    def _read(self):
        for line in self.process.stdout:
            message = json.loads(line)
            if "id" in message and ("result" in message or "error" in message):
                result = message.get("error") or message["result"]
                with self._arrived:
                    self._answers[message["id"]] = (result.get("structuredContent", result), time.monotonic())
                    self._arrived.notify_all()
        with self._arrived:
            self._ended = True
            self._arrived.notify_all()


class Person:
    """Sits at a terminal of their own (a pty) that is attached to a tmux session."""

    def __init__(self, laboratory, pane):
        self._terminal, theirs = os.openpty()
        fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 40, 120, 0, 0))
        self.process = subprocess.Popen(["tmux", "attach", "-t", pane], env=laboratory.environment, stdin=theirs,
                                        stdout=theirs, stderr=theirs, start_new_session=True)
        os.close(theirs)
        threading.Thread(target=self._look, daemon=True).start()
        if not eventually(lambda: laboratory.tmux("list-clients")):
            raise RuntimeError("the second client did not attach")

    def type(self, text):
        os.write(self._terminal, text.encode())

    def leave(self):
        self.process.terminate()
        self.process.wait()

    def _look(self):
        while True:
            try:
                if not os.read(self._terminal, 1 << 16):
                    return
            except OSError:
                return
