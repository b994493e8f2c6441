"""A made-up application at the control socket: it answers each tool with the answer that tests/data/responses has for
it, or keeps every request until it is told to answer."""

import contextlib
import json
import os
import pathlib
import queue
import socket
import struct
import threading

RESPONSES = pathlib.Path(__file__).parent.parent / "data" / "responses"


def response_to(request):
    response = json.loads((RESPONSES / f"{request['operation']}.json").read_text())
    return {**response, "requestId": request["requestId"]}


class FakeApplication:
    """`silent`: answers only when `release` is called. Everything may be called from the test's thread alone."""

    def __init__(self, runtime_directory, silent=False, respond=response_to):
        folder = pathlib.Path(runtime_directory) / "app.velmora.Velmora"
        folder.mkdir(mode=0o700, exist_ok=True)
        self._path = folder / "control-v1.sock"
        self._listening = socket.socket(socket.AF_UNIX)
        self._listening.bind(str(self._path))
        os.chmod(self._path, 0o600)
        self._listening.listen(64)
        self._silent = silent
        self._respond = respond
        self._lock = threading.Lock()
        self._connections = []
        self._kept = []  # requests that wait for `release`, each with its connection
        self._received = queue.Queue()
        self._ended = queue.Queue()
        threading.Thread(target=self._accept, daemon=True).start()

    def next_request(self, seconds=20):
        """Waits for the next request that has not been handed out yet; queue.Empty when none comes."""
        return self._received.get(timeout=seconds)

    def wait_for_hangup(self, seconds=20):
        """Waits until a client's end of a connection is closed; queue.Empty when none is."""
        self._ended.get(timeout=seconds)

    def release(self):
        """Answers all requests that wait."""
        with self._lock:
            kept, self._kept = self._kept, []
        for connection, request in kept:
            self._answer(connection, request)

    def close(self):
        # Closing alone would not wake the thread that accepts.
        self._listening.shutdown(socket.SHUT_RDWR)
        self._listening.close()
        with self._lock:
            connections, self._connections = self._connections, []
        for connection in connections:
            with contextlib.suppress(OSError):
                connection.shutdown(socket.SHUT_RDWR)
        self._path.unlink(missing_ok=True)

    def _accept(self):
        while True:
            try:
                connection, _ = self._listening.accept()
            except OSError:
                return
            with self._lock:
                self._connections.append(connection)
            threading.Thread(target=self._serve, args=(connection,), daemon=True).start()

    def _serve(self, connection):
        try:
            with connection.makefile("rb") as stream:
                while len(header := stream.read(4)) == 4:
                    request = json.loads(stream.read(struct.unpack(">I", header)[0]))
                    if self._silent:
                        with self._lock:
                            self._kept.append((connection, request))
                    self._received.put(request)
                    if not self._silent:
                        self._answer(connection, request)
        except (OSError, ValueError):
            pass  # the client is gone, perhaps in the middle of a frame
        finally:
            with self._lock:
                self._kept = [kept for kept in self._kept if kept[0] is not connection]
                if connection in self._connections:
                    self._connections.remove(connection)
            connection.close()
            self._ended.put(None)

    def _answer(self, connection, request):
        payload = json.dumps(self._respond(request), ensure_ascii=False).encode()
        try:
            connection.sendall(struct.pack(">I", len(payload)) + payload)
        except OSError:
            pass  # the client did not wait for it
