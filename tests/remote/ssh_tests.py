"""Terminals of other machines, over real SSH: an sshd of the test's own on loopback for each machine, with its own keys,
port, home, tmux and bridge. Only what the test starts is touched; no system sshd is.

    ssh_tests.py SSHD
"""

import contextlib
import getpass
import json
import os
import pathlib
import select
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAMS = pathlib.Path(os.environ["VELMORA_BIN"])
SSHD = pathlib.Path(sys.argv.pop(1)).resolve()
PATIENCE = 45


def until(look):
    """What `look` returns as soon as that is true."""
    end = time.monotonic() + PATIENCE
    while not (seen := look()):
        if time.monotonic() > end:
            raise AssertionError("it did not come to that")
        time.sleep(0.02)
    return seen


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def processes_below(parent):
    """Every process that descends from `parent`."""
    children = {}
    for entry in pathlib.Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):
            fields = (entry / "stat").read_text().rsplit(")", 1)[1].split()
            if fields[0] != "Z":
                children.setdefault(int(fields[1]), []).append(int(entry.name))
    below, unseen = [], [parent]
    while unseen:
        below += (found := children.get(unseen.pop(), []))
        unseen += found
    return below


class Machine:
    """A home with tmux and a bridge, behind an sshd."""

    def __init__(self, folder, name):
        self.home = folder / name
        self.port = free_port()
        self.home.mkdir(mode=0o700)
        (self.home / ".bashrc").write_text("PS1='$ '\n")
        self.environment = {
            "HOME": str(self.home), "PATH": f"{PROGRAMS}:{folder}:/usr/bin:/bin", "SHELL": "/bin/bash", "LANG": "C.UTF-8",
            "XDG_RUNTIME_DIR": str(self.home), "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_CONFIG_HOME": str(self.home / "config"), "TMUX_TMPDIR": str(self.home), "TERM": "xterm-256color"}
        (self.home / f"tmux-{os.getuid()}").mkdir(mode=0o700)
        self.tmux("-f", "/dev/null", "new-session", "-d", "-x", "150", "-y", "40")
        self.bridge = subprocess.Popen([PROGRAMS / "velmora-headless"], env=self.environment, stdout=subprocess.PIPE,
                                       stderr=subprocess.DEVNULL, text=True)
        self.bridge.stdout.readline()
        self.start_sshd(folder)

    def start_sshd(self, folder):
        settings = self.home / "sshd_config"
        variables = " ".join(f'"{name}={value}"' for name, value in self.environment.items())
        settings.write_text(
            f"Port {self.port}\nListenAddress 127.0.0.1\nHostKey {folder}/host\nPidFile none\nUsePAM no\nStrictModes no\n"
            f"AuthorizedKeysFile {folder}/user.pub\nPasswordAuthentication no\nKbdInteractiveAuthentication no\n"
            f"PermitRootLogin prohibit-password\nSetEnv {variables}\n{self.helpers()}")
        libraries = SSHD.parents[1] / "lib" / f"{os.uname().machine}-linux-gnu"
        command = [SSHD, "-D", "-e", "-f", settings]
        if os.getuid() == 0:
            # As root it wants a folder and a user of its own; it gets both in a view of the files that nobody else has.
            users = self.home / "passwd"
            users.write_text(pathlib.Path("/etc/passwd").read_text() + "sshd:x:65533:65534::/run/sshd:/usr/sbin/nologin\n")
            furnish = f"mount -t tmpfs none /run && mkdir /run/sshd && mount --bind {users} /etc/passwd && exec \"$@\""
            command = ["unshare", "--mount", "sh", "-c", furnish, "sh", *command]
        self.log = open(self.home / "sshd.log", "w", encoding="utf-8")
        self.sshd = subprocess.Popen(command, stderr=self.log, env={"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LD_LIBRARY_PATH": str(libraries)})
        until(lambda: "listening on" in (self.home / "sshd.log").read_text() or self.sshd.poll() is not None)

    @staticmethod
    def helpers():
        """From OpenSSH 10 on sshd runs programs of its own, and looks for them where they would be if it were installed."""
        folder = SSHD.parents[1] / "lib" / "openssh"
        return "".join(f"{keyword} {folder / name}\n" for keyword, name in
                       (("SshdSessionPath", "sshd-session"), ("SshdAuthPath", "sshd-auth")) if (folder / name).exists())

    def tmux(self, *arguments):
        socket_path = self.home / f"tmux-{os.getuid()}" / "default"
        return subprocess.run(["tmux", "-S", socket_path, *arguments], env=self.environment, check=True,
                              capture_output=True, text=True).stdout

    def close(self):
        for process in (self.sshd, self.bridge):
            process.terminate()
            process.wait(PATIENCE)
        self.bridge.stdout.close()
        self.log.close()
        self.tmux("kill-server")


class Client:
    """An MCP client that launches what its configuration says."""

    def __init__(self, command, environment):
        self.process = subprocess.Popen(command, env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL)
        self._last = 0
        self.result("initialize", protocolVersion="2025-11-25", capabilities={}, clientInfo={"name": "t", "version": "1"})

    def send(self, method, **params):
        self._last += 1
        message = {"jsonrpc": "2.0", "id": self._last, "method": method, "params": params}
        self.process.stdin.write(json.dumps(message).encode() + b"\n")
        self.process.stdin.flush()

    def result(self, method, **params):
        self.send(method, **params)
        if not select.select([self.process.stdout], [], [], PATIENCE)[0]:
            raise AssertionError("no answer")
        return json.loads(self.process.stdout.readline())["result"]

    def sends(self, session, command):
        """False while the shell is not ready yet."""
        arguments = {"sessionId": session, "command": command}
        envelope = self.result("tools/call", name="terminal_send_command", arguments=arguments)["structuredContent"]
        assert envelope["ok"] or envelope["error"]["code"] == "SESSION_BUSY", envelope
        return envelope["ok"]

    def data(self, tool, **arguments):
        envelope = self.result("tools/call", name=tool, arguments=arguments)["structuredContent"]
        assert envelope["ok"], envelope
        return envelope["data"]

    def busy(self, session):
        listed = self.data("terminal_list_sessions")["sessions"]
        return next(each for each in listed if each["sessionId"] == session)["busy"]

    def close(self):
        self.process.kill()
        self.process.wait()
        self.process.stdin.close()
        self.process.stdout.close()


class Remote(unittest.TestCase):
    def setUp(self):
        folder = tempfile.mkdtemp(prefix="velmora-ssh-", dir="/tmp")
        self.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        self.folder = pathlib.Path(folder)
        for key in ("host", "user"):
            subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", self.folder / key], check=True)
        self.machines = {}

    def machine(self, name):
        machine = self.machines[name] = Machine(self.folder, name)
        self.addCleanup(machine.close)
        with open(self.folder / "ssh_config", "a", encoding="utf-8") as settings:
            settings.write(f"Host {name}\n HostName 127.0.0.1\n Port {machine.port}\n User {getpass.getuser()}\n"
                           f" IdentityFile {self.folder}/user\n IdentitiesOnly yes\n UserKnownHostsFile /dev/null\n"
                           " StrictHostKeyChecking no\n LogLevel ERROR\n")
        # The client's own configuration would be the user's.
        ssh = self.folder / "ssh"
        ssh.write_text(f'#!/bin/sh\nexec /usr/bin/ssh -F {self.folder}/ssh_config "$@"\n')
        ssh.chmod(0o755)
        return machine

    def environment(self):
        return {"PATH": f"{self.folder}:/usr/bin:/bin", "HOME": str(self.folder)}

    def client(self, host, *options):
        printed = subprocess.run([PROGRAMS / "velmora", "config", "--ssh", host, *options, "cursor"],
                                 env=self.environment(), check=True, capture_output=True, text=True).stdout
        ((name, server),) = json.loads(printed)["mcpServers"].items()
        self.assertEqual(name, f"terminal-{host}")
        client = Client([server["command"], *server["args"]], self.environment())
        self.addCleanup(client.close)
        return client

    def run_there(self, client, text):
        session = client.data("terminal_create_session")["session"]["sessionId"]
        until(lambda: client.data("terminal_read_output", sessionId=session)["text"].strip())  # its prompt
        until(lambda: client.sends(session, f"echo {text}-$((40+2))"))
        until(lambda: f"{text}-42" in client.data("terminal_read_output", sessionId=session)["text"])

    def test_one_client_uses_the_terminals_of_several_machines(self):
        machines = [self.machine(name) for name in ("one", "two")]
        clients = [self.client(name) for name in ("one", "two")]
        for client, text in zip(clients, ("first", "second")):
            self.run_there(client, text)
        for machine, own, other in zip(machines, ("first", "second"), ("second", "first")):
            screens = "".join(machine.tmux("capture-pane", "-p", "-t", pane)
                              for pane in machine.tmux("list-panes", "-a", "-F", "#{pane_id}").split())
            self.assertIn(f"{own}-42", screens)
            self.assertNotIn(other, screens)

    def test_a_connection_that_breaks_in_mid_call_leaves_nothing_hanging(self):
        machine = self.machine("one")
        client = self.client("one", "--extended")
        session = client.data("terminal_create_session")["session"]["sessionId"]
        until(lambda: client.data("terminal_read_output", sessionId=session)["text"].strip())  # its prompt
        until(lambda: client.sends(session, "echo ready-$((40+2))"))
        # And the next prompt: before that, the line still stands there as if somebody typed.
        until(lambda: client.data("terminal_read_output", sessionId=session)["text"].partition("ready-42")[2].strip())
        marks = machine.home / "marks"
        client.send("tools/call", name="terminal_send_command",
                    arguments={"sessionId": session, "command": f"echo x >>{marks}; sleep 2", "waitSeconds": 40})
        until(marks.exists)
        ssh = client.process.pid
        os.kill(ssh, signal.SIGKILL)
        self.assertEqual(client.process.stdout.read(), b"", "no answer that could be taken for one")
        self.assertEqual(client.process.wait(), -signal.SIGKILL)
        until(lambda: not processes_below(machine.sshd.pid))
        again = self.client("one")
        until(lambda: not again.busy(session))
        self.assertEqual(marks.read_text(), "x\n", "it ran once, and to its end")
        self.run_there(again, "alive")

    def test_an_agents_pane_does_not_resume_over_a_login_of_its_own(self):
        machine = self.machine("one")
        subprocess.run([PROGRAMS / "velmora", "pause"], env=machine.environment, check=True, stdout=subprocess.DEVNULL)
        outcome = machine.home / "outcome"
        machine.tmux("send-keys", f"{self.folder}/ssh one velmora resume </dev/null >{outcome}.tmp 2>&1; echo $? >>{outcome}.tmp; mv {outcome}.tmp {outcome}", "Enter")
        until(outcome.exists)
        self.assertRegex(outcome.read_text(), r"takes a terminal of your own(.|\n)*\n1\n$")
        status = subprocess.run([PROGRAMS / "velmora", "status", "--json"], env=machine.environment, check=True,
                                capture_output=True, text=True).stdout
        self.assertTrue(json.loads(status)["limits"]["paused"])


if __name__ == "__main__":
    unittest.main()
