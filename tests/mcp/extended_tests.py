"""The extended form: the same nine tools with further arguments, over a real tmux and over an older application."""

import base64
import json
import struct
import time
import unittest

import published_schema
from conversation import Conversation
from fake_application import FakeApplication
from helper_process import Folder, environment_in
from real_bridge import RealBridge
from tool_result import expect_tool_result

REVISIONS = ("2025-11-25", "2026-07-28")
PLAIN_ARGUMENTS = {
    "terminal_status": [], "terminal_list_sessions": ["includeBusy", "includeReadOnly"],
    "terminal_get_active_session": [], "terminal_create_session": ["inSessionId", "kind"],
    "terminal_send_command": ["command", "sessionId"], "terminal_send_key": ["key", "repeatCount", "sessionId"],
    "terminal_read_output": ["maxCharacters", "sessionId", "source"], "terminal_capture_screen": ["sessionId"],
    "terminal_focus_session": ["sessionId"]}
STATE = ["busy", "permission", "title"]


def until(look, seconds=20):
    """What `look` returns as soon as that is true."""
    end = time.monotonic() + seconds
    while not (seen := look()):
        if time.monotonic() > end:
            raise AssertionError("it did not come to that")
        time.sleep(0.02)
    return seen


class Talk(unittest.TestCase):
    revision = REVISIONS[0]

    def open_window(self, **window):
        """One whose prompt is there: a cursor that moves while something is sent looks as if somebody typed."""
        made = self.data("terminal_create_session", **window)["session"]
        until(lambda: self.data("terminal_read_output", sessionId=made["sessionId"])["text"])
        return made

    def setUp(self):
        self.folder = Folder()
        self.addCleanup(self.folder.close)

    def bridge(self):
        self.real = RealBridge(self.folder.path)
        self.addCleanup(self.real.close)

    def allow_busy_input(self):
        settings = self.folder.path / "data" / "Velmora"
        settings.mkdir(parents=True, exist_ok=True, mode=0o700)
        (settings / "settings.json").write_text(json.dumps(
            {"schemaVersion": 1, "settings": {"allowBusySessionInput": True}}))

    def talk(self, revision=None, **environment):
        conversation = Conversation(revision or self.revision, {**environment_in(self.folder.path), **environment})
        self.addCleanup(conversation.close)
        if not conversation.modern:
            conversation.initialize()
        self.conversation = conversation
        self.tools = {tool["name"]: tool for tool in conversation.result("tools/list")["tools"]}
        return conversation

    def extended(self, revision=None):
        return self.talk(revision, VELMORA_EXTENDED="1")

    def envelope(self, tool, **arguments):
        return self.envelope_in(tool, self.conversation.result("tools/call", {"name": tool, "arguments": arguments}))

    def envelope_in(self, tool, result):
        return expect_tool_result(self.conversation.schema.revision, result, self.tools[tool]["outputSchema"])

    def data(self, tool, **arguments):
        return self.data_in(tool, self.conversation.result("tools/call", {"name": tool, "arguments": arguments}))

    def data_in(self, tool, result):
        envelope = self.envelope_in(tool, result)
        self.assertTrue(envelope["ok"], envelope)
        return envelope["data"]

    def wait_until_it_runs(self, program, session):
        """A session is busy while its shell still starts the program, too; a key would meet the shell then."""
        until(lambda: self.listed(session)["program"] == program)

    def run_in_all(self, sessions, commands, seconds):
        """Runs a command in each session; the calls wait beside each other. Of each: its key, and the answer's data."""
        calls = {key: self.conversation.send("tools/call", {"name": "terminal_send_command", "arguments": {
            "sessionId": session, "command": commands[key], "waitSeconds": seconds}})
                 for key, session in sessions.items()}
        return [(key, self.data_in("terminal_send_command", self.conversation.result_of(id)))
                for key, id in calls.items()]

    def text(self, session):
        return self.data("terminal_read_output", sessionId=session)["text"]

    def listed(self, session):
        sessions = self.data("terminal_list_sessions")["sessions"]
        return next(each for each in sessions if each["sessionId"] == session)


class Forms(Talk):
    def arguments(self):
        return {name: sorted(tool["inputSchema"].get("properties", {})) for name, tool in self.tools.items()}

    def test_without_a_choice_the_schemas_are_the_prescribed_ones(self):
        for choice in ({}, {"VELMORA_EXTENDED": ""}, {"VELMORA_EXTENDED": "0"}):
            self.talk(**choice)
            self.assertEqual(self.arguments(), PLAIN_ARGUMENTS)
            self.assertEqual(len(self.tools["terminal_send_key"]["inputSchema"]["properties"]["key"]["enum"]), 13)

    def test_the_extended_form_has_the_same_tools_with_more_optional_arguments(self):
        for revision in REVISIONS:
            self.extended(revision)
            self.assertEqual(sorted(self.tools), sorted(PLAIN_ARGUMENTS))
            for name, tool in self.tools.items():
                self.assertLessEqual(set(PLAIN_ARGUMENTS[name]), set(self.arguments()[name]))
                self.assertLessEqual(set(tool["inputSchema"].get("required", [])), set(PLAIN_ARGUMENTS[name]))
                self.assertLess(len(tool["description"].encode()), 2048)
            keys = self.tools["terminal_send_key"]["inputSchema"]["properties"]["key"]["enum"]
            self.assertLessEqual({"return", "pageDown", "enter", "controlC", "f12"}, set(keys))
            self.conversation.end()

    def test_the_server_shows_its_icon_where_the_revision_has_a_place_for_it(self):
        shown = []
        for revision in published_schema.REVISIONS:
            conversation = self.extended(revision)
            server = (conversation.result("server/discover")["_meta"][published_schema.SERVER_IN_META]
                      if conversation.modern else conversation.initialize()["serverInfo"])
            for icon in server.get("icons", []):
                kind, _, data = icon["src"].partition(",")
                picture = base64.b64decode(data, validate=True)
                width, height = struct.unpack(">II", picture[16:24])
                self.assertEqual((kind, picture[:8]), ("data:image/png;base64", b"\x89PNG\r\n\x1a\n"))
                self.assertEqual(icon["sizes"], [f"{width}x{height}"])
                shown.append(revision)
            conversation.end()
        self.assertEqual(shown, list(REVISIONS))


class OverTmux(Talk):
    def start(self):
        self.bridge()
        self.extended()
        return self.open_window()["sessionId"]

    def test_text_without_return_stays_at_the_prompt(self):
        session = self.start()
        sent = self.data("terminal_send_command", sessionId=session, command="echo typed-$((40+2))", submit=False)
        self.assertEqual(sorted(sent["session"]), STATE)
        until(lambda: "echo typed-" in self.text(session))
        self.assertNotIn("typed-42", self.text(session))

    def test_a_key_of_the_extended_form_is_pressed(self):
        self.allow_busy_input()
        session = self.start()
        self.data("terminal_send_command", sessionId=session, command="echo typed-$((40+2))", submit=False)
        self.data("terminal_send_key", sessionId=session, key="space", repeatCount=3)
        self.data("terminal_send_key", sessionId=session, key="backspace", repeatCount=3)
        sent = self.data("terminal_send_key", sessionId=session, key="enter")
        self.assertEqual((sent["key"], sorted(sent["session"])), ("enter", STATE))
        until(lambda: "typed-42" in self.text(session))

    def test_control_c_ends_what_an_agent_started(self):
        self.allow_busy_input()
        session = self.start()
        self.data("terminal_send_command", sessionId=session, command="sleep 1000")
        self.wait_until_it_runs("sleep", session)
        self.data("terminal_send_key", sessionId=session, key="controlC")
        until(lambda: not self.listed(session)["busy"])

    def test_single_keys_steer_an_editor_and_nothing_is_submitted(self):
        self.allow_busy_input()
        session = self.start()
        file = self.folder.path / "text"
        self.data("terminal_send_command", sessionId=session, command=f"/usr/bin/vi -u NONE {file}")
        until(lambda: self.listed(session)["alternateScreen"])
        for keys in ("i", "one\ntwo", "\x1b", ":wq"):
            self.data("terminal_send_command", sessionId=session, command=keys, submit=False)
            time.sleep(0.3)
        self.data("terminal_send_key", sessionId=session, key="enter")
        until(file.exists)
        self.assertEqual(file.read_text(), "one\ntwo\n")

    def test_a_busy_session_is_refused_in_this_form_too(self):
        session = self.start()
        self.data("terminal_send_command", sessionId=session, command="sleep 1000")
        until(lambda: self.listed(session)["busy"])
        for tool, arguments in (("terminal_send_command", {"command": "y", "submit": False}),
                                ("terminal_send_key", {"key": "controlC"})):
            refused = self.envelope(tool, sessionId=session, **arguments)
            self.assertEqual(refused["error"]["code"], "SESSION_BUSY")

    def test_a_listing_tells_more(self):
        session = self.start()
        odd = self.folder.path / "a\nD\tb"
        odd.mkdir()
        self.data("terminal_send_command", sessionId=session, command="cd " + str(self.folder.path) + "/a*b")
        found = until(lambda: (seen := self.listed(session))["directory"].endswith("b") and seen)
        self.assertEqual(found["directory"], str(self.folder.path) + "/a?D?b")
        self.assertEqual({key: found[key] for key in ("program", "columns", "rows", "alternateScreen", "attached",
                                                      "createdByBridge")},
                         {"program": "bash", "columns": 120, "rows": 40, "alternateScreen": False,
                          "attached": False, "createdByBridge": True})

    def test_a_window_is_opened_as_wished(self):
        self.start()
        folder = self.folder.path / "work #{pid}; here"
        folder.mkdir()
        made = self.data("terminal_create_session", name="build_1", directory=str(folder), columns=90, rows=25)
        session = made["session"]["sessionId"]
        self.assertTrue(made["session"]["title"].startswith("build_1"), made)
        self.assertEqual({key: self.listed(session)[key] for key in ("directory", "columns", "rows")},
                         {"directory": str(folder), "columns": 90, "rows": 25})
        for wrong, words in (({"name": "build_1"}, "exists already"), ({"name": "a b"}, "name must be"),
                             ({"directory": "work"}, "absolute path"), ({"directory": "/none such"}, "no directory"),
                             ({"columns": 19}, "between 20 and 500"), ({"rows": 201}, "between 5 and 200")):
            refused = self.envelope("terminal_create_session", **wrong)
            self.assertEqual(refused["error"]["code"], "INVALID_ARGUMENT", wrong)
            self.assertIn(words, refused["error"]["message"])

    def test_leaving_the_arguments_out_means_what_it_meant(self):
        session = self.start()
        self.data("terminal_send_command", sessionId=session, command="echo typed-$((40+2))")
        until(lambda: "typed-42" in self.text(session))
        self.assertEqual(sorted(self.data("terminal_read_output", sessionId=session)["session"]), STATE)

    def test_who_has_not_asked_neither_gives_nor_gets_it(self):
        self.bridge()
        self.talk()
        made = self.data("terminal_create_session", name="mine", columns=33)["session"]
        self.assertNotIn("columns", self.listed(made["sessionId"]))
        self.assertTrue(made["title"].startswith("velmora-1"), made)
        sent = self.data("terminal_send_command", sessionId=made["sessionId"], command="echo typed-$((40+2))",
                         submit=False)
        self.assertEqual(sorted(sent), ["deliveredAt", "deliveryStatus", "sessionId"])
        until(lambda: "typed-42" in self.text(made["sessionId"]))


class OverAnOlderApplication(Talk):
    """It ignores keys that it does not know, and so would press Return."""

    SESSION = "00000000-0000-0000-0000-000000000001"

    def setUp(self):
        super().setUp()
        self.application = FakeApplication(self.folder.path)
        self.addCleanup(self.application.close)
        self.extended()

    def test_what_it_would_misunderstand_is_not_sent(self):
        for tool, arguments in (("terminal_send_command", {"sessionId": self.SESSION, "command": "y", "submit": False}),
                                ("terminal_send_key", {"sessionId": self.SESSION, "key": "controlC"}),
                                ("terminal_create_session", {"name": "mine"})):
            refused = self.envelope(tool, **arguments)
            self.assertEqual(refused["error"]["code"], "BRIDGE_UNAVAILABLE")
            self.assertIn("older than this helper", refused["error"]["message"])
            self.assertEqual(self.application.next_request()["operation"], "terminal_status")

    def test_everything_else_works_as_ever(self):
        self.data("terminal_send_command", sessionId=self.SESSION, command="ls")
        self.data("terminal_list_sessions")
        request = self.application.next_request()
        self.assertEqual((request["operation"], request["extended"]), ("terminal_send_command", True))


if __name__ == "__main__":
    unittest.main()
