"""Waiting for a command's end, over a real tmux and in every shell: an answer that says "finished" too early would be
worse than none."""

import os
import time
import unittest

from extended_tests import Talk, until

SHELLS = ("bash", "zsh", "fish", "dash")
START = {"bash": "bash --norc", "zsh": "zsh -f", "fish": "fish --no-config", "dash": "dash"}
ROUNDS = int(os.environ.get("VELMORA_COMPLETION_ROUNDS", "3"))
PATIENCE = 45


class Completion(Talk):
    def start(self, shell="bash"):
        self.bridge()
        self.extended()
        return self.window(shell)

    def window(self, shell):
        session = self.open_window()["sessionId"]
        # Waited for: the window's own shell may have the same name.
        self.data("terminal_send_command", sessionId=session, command="exec " + START[shell], waitSeconds=PATIENCE)
        until(lambda: self.listed(session)["program"] == shell and not self.listed(session)["busy"])
        return session

    def run_in(self, session, command, seconds=PATIENCE, **more):
        return self.data("terminal_send_command", sessionId=session, command=command, waitSeconds=seconds, **more)

    def finished(self, session, command, **more):
        return self.completion_of(self.run_in(session, command, **more), command)

    def completion_of(self, sent, command):
        completion = sent["completion"]
        self.assertEqual((completion["state"], completion["evidence"]), ("finished", "process"), (command, sent))
        self.assertFalse(sent["session"]["busy"], command)
        return completion

    def test_finished_is_never_said_too_early(self):
        for shell in SHELLS:
            session = self.start(shell)
            for round in range(ROUNDS):
                for pause in ("0", "0.005", "0.02", "0.1"):
                    mark = self.folder.path / f"{shell}-{round}-{pause}"
                    # A sleep of no time is a command that ends before the first look.
                    command = f"echo > {mark}" if pause == "0" else f"sleep {pause}; echo > {mark}"
                    with self.subTest(shell, command=command):
                        completion = self.finished(session, command)
                        self.assertTrue(mark.exists(), completion)
                        self.assertEqual(completion["output"], "")
            self.conversation.end()
            self.doCleanups()
            self.setUp()

    def test_what_is_over_at_once_is_finished_in_every_shell(self):
        self.bridge()
        self.extended()
        sessions = {shell: self.window(shell) for shell in SHELLS}
        for command, output in (("cd /", ""), ("false", ""), ("echo one", "one"), ("echo a; echo b", "a\nb"),
                                ("sleep 0.1 | sleep 0.2", ""), ("sleep 0.1 &", None), ("clear", ""),
                                ("sleep 0.5", None)):
            for shell, sent in self.run_in_all(sessions, dict.fromkeys(sessions, command), PATIENCE):
                with self.subTest(shell, command=command):
                    completion = self.completion_of(sent, command)
                    if output is not None:
                        self.assertEqual(completion["output"], output)
        for shell, sent in self.run_in_all(sessions, dict.fromkeys(sessions, "exit"), PATIENCE):
            with self.subTest(shell, command="exit"):
                self.assertEqual(sent["completion"]["state"], "closed")
        self.conversation.end()

    def test_what_asks_for_input_is_running_and_its_question_is_shown(self):
        self.bridge()
        self.extended()
        questions = (("bash", "printf 'Your name? '; read name"), ("dash", "printf 'Your name? '; read name"),
                     ("zsh", "read 'name?Your name? '"), ("bash", "/usr/bin/python3 -q"),
                     ("bash", "echo 'unfinished"), ("zsh", "echo 'unfinished"))
        sessions = {(shell, question): self.window(shell) for shell, question in questions}
        for (shell, question), sent in self.run_in_all(sessions, {key: key[1] for key in sessions}, 3):
            with self.subTest(shell, command=question):
                completion = sent["completion"]
                self.assertEqual((completion["state"], completion["evidence"]), ("running", "timeout"), completion)
                if "name" in question:
                    self.assertIn("Your name?", completion["output"])
        self.conversation.end()

    def test_a_heredoc_and_a_new_shell_are_finished(self):
        session = self.start()
        self.assertEqual(self.finished(session, "cat <<END\none\ntwo\nEND")["output"][-7:], "one\ntwo")
        self.finished(session, "exec bash --norc")
        self.finished(session, "(sleep 100 & kill -STOP $!)")

    def test_long_output_keeps_its_end(self):
        session = self.start()
        completion = self.finished(session, "seq 100000", maxCharacters=20)
        self.assertTrue(completion["output"].endswith("99999\n100000"), completion)
        self.assertTrue(completion["outputTruncated"])

    def test_output_without_a_line_end_is_not_lost_with_the_prompt(self):
        self.bridge()
        self.extended()
        for shell in ("bash", "dash"):
            for command, output in (("printf hi", "hi"), ("printf %0321d 7", "7".rjust(321, "0"))):
                with self.subTest(shell, command=command):
                    # In windows of their own: readline draws the next line over such output.
                    self.assertEqual(self.finished(self.window(shell), command)["output"], output)
        self.conversation.end()

    def test_other_calls_go_on_meanwhile_and_may_interrupt(self):
        self.allow_busy_input()
        session = self.start()
        arguments = {"sessionId": session, "command": "sleep 1000", "waitSeconds": 40}
        waiting = self.conversation.send("tools/call", {"name": "terminal_send_command", "arguments": arguments})
        self.wait_until_it_runs("sleep", session)
        begun = time.monotonic()
        self.data("terminal_send_key", sessionId=session, key="controlC")
        ended = self.conversation.result_of(waiting)["structuredContent"]["data"]["completion"]
        self.assertEqual(ended["state"], "finished")
        self.assertLess(time.monotonic() - begun, 30)

    def test_a_cancelled_wait_is_never_answered_and_leaves_the_command_alone(self):
        session = self.start()
        arguments = {"sessionId": session, "command": "sleep 1000", "waitSeconds": 40}
        waiting = self.conversation.send("tools/call", {"name": "terminal_send_command", "arguments": arguments})
        until(lambda: self.listed(session)["busy"])
        self.conversation.cancel(waiting)
        self.assertTrue(self.listed(session)["busy"])
        self.conversation.end()

    def test_leaving_it_out_waits_for_nothing(self):
        session = self.start()
        sent = self.data("terminal_send_command", sessionId=session, command="sleep 1000")
        self.assertNotIn("completion", sent)


del Talk  # its own tests run elsewhere

if __name__ == "__main__":
    unittest.main()
