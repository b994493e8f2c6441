"""The helper in a container of its own: it has the five variables that clients leave it, its parent is process 1, and
the places where it looks for the application are this test's alone.

Starts itself anew in user, mount and process namespaces, where /run and /tmp are empty.
"""

import os
import pathlib
import subprocess
import sys
import time
import unittest
from contextlib import closing

import helper_process
from helper_process import HelperProcess, scrubbed_environment

HOME = pathlib.Path("/run/home")
INITIALIZE = {"jsonrpc": "2.0", "id": 0, "method": "initialize",
              "params": {"protocolVersion": "2025-11-25", "capabilities": {}, "clientInfo": {"name": "t", "version": "1"}}}
CALL = {"jsonrpc": "2.0", "id": 1, "method": "tools/call", "params": {"name": "terminal_status", "arguments": {}}}


def enter():
    """Replaces this process by itself in a container."""
    os.execvp("unshare", ["unshare", "--user", "--map-root-user", "--mount", "--pid", "--fork", "--kill-child",
                          "--mount-proc", sys.executable, __file__, "inside"])


def furnish():
    """Empties /run and /tmp; the programs, which may lie below /tmp, are found below /run."""
    programs = os.open(helper_process.PROGRAMS, os.O_PATH)
    subprocess.run(["mount", "-t", "tmpfs", "none", "/run"], check=True)
    pathlib.Path("/run/bin").mkdir()
    subprocess.run(["mount", "--bind", f"/proc/self/fd/{programs}", "/run/bin"], check=True, pass_fds=[programs])
    subprocess.run(["mount", "-t", "tmpfs", "none", "/tmp"], check=True)
    os.chdir("/run")
    helper_process.PROGRAMS = pathlib.Path("/run/bin")
    HOME.mkdir()


class Container(unittest.TestCase):
    def five_variables(self):
        environment = scrubbed_environment(HOME, PATH=os.environ["PATH"])
        self.assertEqual(sorted(environment), ["HOME", "PATH", "SHELL", "TERM", "USER"])
        return environment

    def call_status(self):
        with closing(HelperProcess(self.five_variables())) as helper:
            helper.send(INITIALIZE)
            helper.read_line()
            helper.send(CALL)
            return helper.read_line()

    def expect_to_meet(self, socket):
        """Both programs must choose the same socket, this one."""
        with subprocess.Popen([helper_process.PROGRAMS / "velmora-headless"], env=self.five_variables(),
                              stdout=subprocess.PIPE, text=True) as bridge:
            try:
                self.assertEqual(bridge.stdout.readline().strip(), socket)
                self.assertIn('"mcpState":"active"', self.call_status())
            finally:
                bridge.terminate()

    def test_finds_the_application_in_the_users_runtime_directory(self):
        directory = pathlib.Path("/run/user/0")
        directory.mkdir(mode=0o700, parents=True)
        try:
            self.expect_to_meet("/run/user/0/app.velmora.Velmora/control-v1.sock")
        finally:
            subprocess.run(["rm", "-r", "/run/user"], check=True)

    def test_finds_the_application_below_tmp_where_there_is_no_such_directory(self):
        self.expect_to_meet("/tmp/app.velmora.Velmora/control-v1.sock")

    def test_says_that_no_application_runs(self):
        self.assertIn("BRIDGE_UNAVAILABLE", self.call_status())

    def test_process_1_is_a_parent_like_any_other(self):
        self.assertEqual(os.getpid(), 1)
        with closing(HelperProcess(self.five_variables())) as helper:
            for id in range(3):
                helper.send({"jsonrpc": "2.0", "id": id, "method": "ping"})
                self.assertIn(f'"id":{id}', helper.read_line())
                time.sleep(0.6)  # longer than between two looks at the parent
            self.assertEqual(helper.end(), (0, "", ""))


if __name__ == "__main__":
    if "inside" not in sys.argv:
        enter()
    furnish()
    unittest.main(argv=sys.argv[:1])
