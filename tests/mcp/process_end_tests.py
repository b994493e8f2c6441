"""Starts the helper 500 times and ends it in every way that clients do; nothing may be left behind.

Takes the number of rounds from VELMORA_ROUNDS, since instrumented programs start more slowly.
"""

import concurrent.futures
import contextlib
import ctypes
import itertools
import os
import pathlib
import select
import signal
import subprocess
import time
import unittest
from contextlib import closing

from fake_application import FakeApplication
from helper_process import PROGRAMS, PROMPT_SECONDS, Folder, HelperProcess, environment_in, scrubbed_environment

ROUNDS = int(os.environ.get("VELMORA_ROUNDS", "500"))
PING = {"jsonrpc": "2.0", "id": 1, "method": "ping"}
INITIALIZE = {"jsonrpc": "2.0", "id": 0, "method": "initialize",
              "params": {"protocolVersion": "2025-11-25", "capabilities": {}, "clientInfo": {"name": "t", "version": "1"}}}
CALL = {"jsonrpc": "2.0", "id": 2, "method": "tools/call", "params": {"name": "terminal_status", "arguments": {}}}
WAYS = ["end of input", signal.SIGTERM, signal.SIGKILL, "dead parent"]
WORKERS = 6  # rounds at once: most of a round is waiting
PR_SET_CHILD_SUBREAPER = 36


class AdoptedHelper(HelperProcess):
    """A helper whose parent is a shell, so that the parent can die while the input stays open."""

    def __init__(self, environment):
        self.process = subprocess.Popen(
            ["/bin/sh", "-c", 'exec 3<&0; "$0" <&3 3<&- & echo $! >&2; wait', PROGRAMS / "velmora"], env=environment,
            cwd=environment["HOME"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self._unread = b""
        self.pid = int(self.process.stderr.readline())


def become_the_parent_of_orphans():
    """What a helper might leave behind becomes this process's child, and so cannot be missed."""
    if ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0) != 0:
        raise OSError("prctl")


def files_in(folder):
    return sorted(str(path) for path in folder.rglob("*"))


def usual_places():
    """Where a helper with hardly any environment could leave something."""
    return [path.exists() for path in (pathlib.Path(f"/run/user/{os.getuid()}/app.velmora.Velmora"),
                                       pathlib.Path("/tmp/app.velmora.Velmora"))]


class ProcessEnd(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        become_the_parent_of_orphans()

    def start(self, state, folder, application, adopted=False):
        environment = scrubbed_environment(folder)
        if state == "in mid-call":
            environment["XDG_RUNTIME_DIR"] = str(folder)
        helper = (AdoptedHelper if adopted else HelperProcess)(environment)
        if state != "starting":
            helper.send(INITIALIZE)
            self.assertIn('"id":0', helper.read_line())
        if state == "in mid-call":
            helper.send(CALL)
            application.next_request()
        return helper

    def end(self, helper, way):
        """Returns the seconds that it took and the exit status."""
        begin = time.monotonic()
        if way == "dead parent":
            helper.process.kill()
            helper.process.wait()
            status = self.reap(helper.pid, begin + PROMPT_SECONDS)
        else:
            if way == "end of input":
                helper.process.stdin.close()
            else:
                helper.process.send_signal(way)
            status = helper.process.wait(PROMPT_SECONDS + 1)
        return time.monotonic() - begin, status

    def reap(self, pid, end):
        """Waits for an orphan, which is this process's child by now."""
        while True:
            ended, status = os.waitpid(pid, os.WNOHANG)
            if ended:
                return os.waitstatus_to_exitcode(status)
            if time.monotonic() > end:
                os.kill(pid, signal.SIGKILL)
                os.waitpid(pid, 0)
                self.fail("the helper outlived its parent")
            time.sleep(0.002)

    def play_round(self, kind):
        """One start and one end; returns the way and the seconds that it took."""
        state, way = kind
        allowed = {"end of input": [0], signal.SIGTERM: [0, -signal.SIGTERM, 128 + signal.SIGTERM],
                   signal.SIGKILL: [-signal.SIGKILL], "dead parent": [0]}
        with closing(Folder()) as folder, closing(FakeApplication(folder.path, silent=True)) as application:
            before = files_in(folder.path)
            try:
                with closing(self.start(state, folder.path, application, way == "dead parent")) as helper:
                    seconds, status = self.end(helper, way)
                    self.assertLessEqual(seconds, PROMPT_SECONDS)
                    self.assertIn(status, allowed[way])
                    self.assertEqual(helper.process.stdout.read(), b"")
                    self.assertEqual(helper.process.stderr.read(), b"")
                if state == "in mid-call":
                    application.wait_for_hangup()
                self.assertEqual(files_in(folder.path), before)
            except Exception as error:
                error.add_note(f"{state}, ended by {way}")
                raise
        return way, seconds

    def test_every_end_is_prompt_and_leaves_no_process_and_no_file(self):
        before = usual_places()
        # A parent that dies before the helper has looked at it cannot be told from another parent.
        kinds = [(state, way) for state in ("starting", "idle", "in mid-call") for way in WAYS
                 if (state, way) != ("starting", "dead parent")]
        with concurrent.futures.ThreadPoolExecutor(WORKERS) as workers:
            ended = list(workers.map(self.play_round, itertools.islice(itertools.cycle(kinds), ROUNDS)))
        self.assertEqual(usual_places(), before)
        with self.assertRaises(ChildProcessError):  # there is no child, and no orphan
            os.waitpid(-1, os.WNOHANG)
        self.assertEqual(len(ended), ROUNDS)
        for way in WAYS:
            slowest = max(seconds for each, seconds in ended if each == way)
            print(f"{getattr(way, 'name', way)}: {slowest * 1000:.0f} ms at most")

    def test_the_end_of_the_thread_that_started_it_is_no_end(self):
        with closing(Folder()) as folder, concurrent.futures.ThreadPoolExecutor(1) as thread:
            helper = thread.submit(HelperProcess, environment_in(folder.path)).result()
            thread.shutdown()
            with closing(helper):
                for id in range(3):
                    helper.send({**PING, "id": id})
                    self.assertIn(f'"id":{id}', helper.read_line())
                self.assertEqual(helper.end(), (0, "", ""))

    def test_ends_promptly_also_when_nobody_takes_what_it_says(self):
        request = b'{"jsonrpc":"2.0","id":1,"method":"ping"}\n' * 1000
        for way in ("end of input", signal.SIGTERM):
            with self.subTest(way), closing(Folder()) as folder, \
                    closing(self.start("idle", folder.path, None)) as helper:
                os.set_blocking(helper.process.stdin.fileno(), False)
                with contextlib.suppress(BlockingIOError):
                    while select.select([], [helper.process.stdin], [], 0.5)[1]:
                        os.write(helper.process.stdin.fileno(), request)
                self.assertLessEqual(self.end(helper, way)[0], PROMPT_SECONDS)

    def test_nobody_reading_its_output_ends_it(self):
        with closing(Folder()) as folder, closing(self.start("idle", folder.path, None)) as helper:
            helper.process.stdout.close()
            with contextlib.suppress(BrokenPipeError):  # it may have noticed by itself
                helper.send(PING)
            helper.process.wait(PROMPT_SECONDS + 1)


if __name__ == "__main__":
    unittest.main()
