"""Exit codes by shell integration, over a real tmux: a wrong one would be worse than none, and nothing of the user's may
change."""

import json
import os
import re
import stat
import subprocess
import unittest

from extended_tests import Talk, until
from helper_process import PROGRAMS

PROGRAM = {name: f"/usr/bin/{name}" for name in ("bash", "zsh", "fish", "dash")}
INTEGRATED = ("bash", "zsh", "fish")
PATIENCE = 45


class Integrated(Talk):
    conversation = None

    def start(self, shell="bash", files=None, notes=True):
        """A window that the bridge opens, with `shell` as the user's own; `files` are of the home. `notes`: the shell is
        integrated."""
        for name, text in (files or {}).items():
            path = self.folder.path / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text)
        self.bridge()
        self.extended()
        return self.window(shell, notes)

    def window(self, shell, notes=True):
        """Another of them, over the same bridge."""
        self.tmux("set-option", "-g", "default-shell", PROGRAM[shell])
        session = self.data("terminal_create_session")["session"]["sessionId"]
        # fish greets before it is ready.
        until(lambda: not self.listed(session)["busy"] and self.text(session).rstrip()[-1:] in tuple("$#%>"))
        record = self.records / self.listed(session)["tty"].removeprefix("/dev/").replace("/", "-")
        if notes:
            until(lambda: record.exists() and record.stat().st_size)
        return session

    @property
    def records(self):
        return self.folder.path / "app.velmora.Velmora" / "shells"

    def tmux(self, *arguments):
        socket = self.folder.path / f"tmux-{os.getuid()}" / "default"
        return subprocess.run(["tmux", "-S", str(socket), *arguments], check=True, capture_output=True,
                              text=True).stdout

    def again(self):
        if self.conversation:
            self.conversation.end()
        self.doCleanups()
        self.setUp()

    def completion(self, session, command, seconds=PATIENCE):
        sent = self.data("terminal_send_command", sessionId=session, command=command, waitSeconds=seconds)
        return sent["completion"]

    def ends(self, session, command, code):
        return self.check(self.completion(session, command), command, code)

    def check(self, completion, command, code):
        self.assertEqual(completion["state"], "finished", (command, completion))
        self.assertEqual(completion.get("exitCode"), code, (command, completion))
        evidence = "process" if code is None else "shellIntegration"
        self.assertEqual(completion["evidence"], evidence, (command, completion))
        return completion

    def prints(self, session, command):
        return self.completion(session, command)["output"]

    def all_shells(self):
        """A window of each, over one bridge."""
        return {shell: self.window(shell) if shell != INTEGRATED[0] else self.start(shell) for shell in INTEGRATED}

    def test_every_shell_tells_how_a_command_ended(self):
        sessions = self.all_shells()
        for command, code in (("true", 0), ("false", 1), ("sh -c 'exit 3'", 3), ("false | true", 0),
                              ("true | sh -c 'exit 5'", 5), ("cd /no/such/folder", 1), ("cd /", 0), ("clear", 0),
                              ("sleep 0.2; false", 1), ("true", 0), ("sleep 0.1 &", 0), ("no-such-program", 127),
                              ("bash --norc -c 'exit 4'", 4), ("sh -c 'kill -INT $$'", 130),
                              # What the terminal is told is no evidence.
                              ("printf '\\033]133;D;7\\007'", 0), ("printf '\\033]133;A\\007'; sleep 0.3", 0)):
            for shell, sent in self.run_in_all(sessions, dict.fromkeys(sessions, command), PATIENCE):
                with self.subTest(shell, command=command):
                    self.check(sent["completion"], command, code)
        # fish leaves $status alone then.
        self.ends(sessions["fish"], "false", 1)
        for command in ("sleep 0.1 &", "set x 1", "# nothing"):
            self.ends(sessions["fish"], command, None)
        self.ends(sessions["fish"], "false", 1)
        for shell, sent in self.run_in_all(sessions, dict.fromkeys(sessions, "exit 3"), PATIENCE):
            with self.subTest(shell, command="exit 3"):
                closed = sent["completion"]
                self.assertEqual((closed["state"], closed.get("exitCode")), ("closed", None))
        self.conversation.end()

    def test_every_shell_marks_its_prompts_and_commands_for_the_terminal(self):
        sessions = self.all_shells()
        # The prompt may be drawn more than once. fish 4 says more with its own marks.
        marks = re.compile(r"C D;3 A (?:A |B )*B (?:A |B )*C D;0 A")
        for number, shell in enumerate(sessions, 1):
            self.tmux("pipe-pane", "-t", f"=velmora-{number}:", f"cat > {self.folder.path / shell}")
        for command, code in (("sh -c 'exit 3'", 3), ("true", 0)):
            for _, sent in self.run_in_all(sessions, dict.fromkeys(sessions, command), PATIENCE):
                self.check(sent["completion"], command, code)
        for shell in sessions:
            with self.subTest(shell):
                until(lambda: marks.search(" ".join(re.findall(r"\x1b\]133;([A-D](?:;\d+)?)(?:;\w+=[^\x07]*)?\x07",
                                                               self.written(self.folder.path / shell)))))
        self.conversation.end()

    def written(self, raw):
        return raw.read_text(errors="replace") if raw.exists() else ""

    def test_a_heredoc_a_stopped_job_and_another_shell(self):
        for shell in ("bash", "zsh"):
            session = self.start(shell)
            self.ends(session, "cat <<END >/dev/null\none\ntwo\nEND", 0)
            stopped = self.completion(session, "sh -c 'kill -STOP $$'")
            self.assertIn(stopped["exitCode"], (147, 148, 19, 20), stopped)
            with self.subTest(shell, says="two lines are two commands, and neither is the command"):
                self.assertIn(self.completion(session, "false\nsh -c 'exit 6'").get("exitCode"), (None, 6))
            self.ends(session, "fc -l >/dev/null; false", 1)
            with self.subTest(shell, says="a shell that takes the process over has noted nothing"):
                self.ends(session, "exec bash --norc", None)
                self.ends(session, "false", None)
                self.ends(session, "false", None)
            self.again()

    def test_an_interrupted_command_ends_with_130(self):
        self.allow_busy_input()
        sessions = self.all_shells()
        # The calls wait beside each other, and so do the keys for the commands' next second.
        waiting = [self.conversation.send("tools/call", {"name": "terminal_send_command", "arguments": {
            "sessionId": session, "command": "sleep 1000", "waitSeconds": 40}}) for session in sessions.values()]
        for session in sessions.values():
            self.wait_until_it_runs("sleep", session)
        keys = [self.conversation.send("tools/call", {"name": "terminal_send_key", "arguments": {
            "sessionId": session, "key": "controlC"}}) for session in sessions.values()]
        for key in keys:
            self.data_in("terminal_send_key", self.conversation.result_of(key))
        for shell, id in zip(sessions, waiting):
            ended = self.data_in("terminal_send_command", self.conversation.result_of(id))["completion"]
            self.assertEqual((shell, ended["state"], ended.get("exitCode")), (shell, "finished", 130))
        self.conversation.end()

    def test_what_is_typed_for_a_program_that_runs_is_no_command_of_the_shell(self):
        self.allow_busy_input()
        session = self.start()
        asked = self.completion(session, "sh -c 'read a; exit 9'", 1)
        self.assertEqual((asked["state"], asked["evidence"]), ("running", "timeout"))
        self.assertNotIn("exitCode", asked)
        self.ends(session, "anything", None)

    def test_an_agent_answers_and_interrupts_what_it_started_if_the_user_allows_that(self):
        self.settings(allowOwnBusySessionInput=True)
        session = self.start()
        other = next(each for each in self.data("terminal_list_sessions")["sessions"] if each["sessionId"] != session)
        self.tmux("send-keys", "-t", "%0", "sleep 1000", "Enter")
        self.data("terminal_send_command", sessionId=session, command="sleep 1000")
        self.wait_until_it_runs("sleep", session)
        self.wait_until_it_runs("sleep", other["sessionId"])
        refused = self.envelope("terminal_send_key", sessionId=other["sessionId"], key="controlC")
        self.assertEqual(refused["error"]["code"], "SESSION_BUSY")
        self.data("terminal_send_key", sessionId=session, key="controlC")
        until(lambda: not self.listed(session)["busy"])

    def test_a_shell_inside_the_shell_is_no_witness_for_the_outer_one(self):
        self.allow_busy_input()
        snippet = self.folder.path / "snippet"
        self.snippet("bash", snippet)
        session = self.start("bash")
        asked = self.completion(session, f"bash --rcfile {snippet} -i", 1)
        self.assertEqual(asked["state"], "running")
        self.assertNotIn("exitCode", self.completion(session, "false", 1))
        self.data("terminal_send_command", sessionId=session, command="exit 8")
        until(lambda: not self.listed(session)["busy"])
        self.ends(session, "sh -c 'exit 5'", 5)

    def test_hostile_records_are_no_evidence(self):
        session = self.start()
        self.ends(session, "false", 1)
        record, = self.records.iterdir()
        self.assertEqual(stat.S_IMODE(record.stat().st_mode), 0o600)
        self.assertEqual(stat.S_IMODE(self.records.stat().st_mode), 0o700)
        text = record.read_text()
        other = self.folder.path / "other"
        for spoil in (lambda: record.write_text("x" * 100_000), lambda: record.write_bytes(b"\xff\x00\n"),
                      lambda: record.write_text(text.replace("1 ", "2 ", 1)), lambda: record.chmod(0o666),
                      lambda: os.mkfifo(record), lambda: record.mkdir(), lambda: record.symlink_to(other)):
            with self.subTest(spoil=spoil):
                if record.is_dir():
                    record.rmdir()
                elif record.exists() or record.is_symlink():
                    record.unlink()
                if spoil.__code__.co_names[0] in ("write_text", "write_bytes", "chmod"):
                    record.write_text(text)
                spoil()
                self.assertIn(self.completion(session, "sh -c 'exit 3'").get("exitCode"), (None, 3))
        self.assertFalse(other.exists(), "nothing is written through a link")

    def snippet(self, shell, path):
        path.write_bytes(subprocess.run([PROGRAMS / "velmora", "shell-integration", shell], check=True,
                                        capture_output=True).stdout)

    def test_the_snippet_in_a_users_own_file(self):
        for shell, file in (("bash", ".bash_profile"), ("zsh", ".zshrc"), ("fish", ".config/fish/config.fish")):
            for before in {"bash": ("set -uC; trap 'x=1' DEBUG; PROMPT_COMMAND='true; : '",
                                    "PROMPT_COMMAND=(true false); PS1='$ '; PS0='|'"),
                           "zsh": ("setopt ksh_arrays nounset noclobber sh_word_split; PS1='$ '",),
                           "fish": ("function fish_prompt; printf '$ '; end",)}[shell]:
                with self.subTest(shell, before=before):
                    self.again()
                    snippet = self.folder.path / "snippet"
                    self.snippet(shell, snippet)
                    text = f"{before}\nsource {snippet}\nsource {snippet}\n"
                    self.settings(shellIntegration="off")
                    session = self.start(shell, {file: text, "config/fish/config.fish": text})
                    self.ends(session, "false", 1)
                    self.ends(session, "true", 0)

    def settings(self, **settings):
        folder = self.folder.path / "data" / "Velmora"
        folder.mkdir(parents=True, exist_ok=True, mode=0o700)
        (folder / "settings.json").write_text(json.dumps({"schemaVersion": 1, "settings": settings}))

    def test_without_it_there_is_no_exit_code(self):
        self.settings(shellIntegration="off")
        self.ends(self.start("bash", notes=False), "false", None)
        self.again()
        self.ends(self.start("dash", notes=False), "false", None)


del Talk  # its own tests run elsewhere

if __name__ == "__main__":
    unittest.main()
