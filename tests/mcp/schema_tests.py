"""Holds every line that the helper writes against the published schemas, revision by revision.

Run with the name of a class below: each is one revision.
"""

import time
import unittest

from conversation import CLIENT, Conversation, initialize_params, modern_meta
from fake_application import FakeApplication
from helper_process import Folder, environment_in
from published_schema import LEGACY_REVISIONS, MODERN_REVISION, REVISIONS, PublishedSchema, tool_schema_validator
from real_bridge import RealBridge
from tool_result import expect_picture, expect_tool_result

TOOLS = ["terminal_status", "terminal_list_sessions", "terminal_get_active_session", "terminal_create_session",
         "terminal_send_command", "terminal_send_key", "terminal_read_output", "terminal_capture_screen",
         "terminal_focus_session"]
HINTS = {"readOnlyHint", "destructiveHint", "idempotentHint", "openWorldHint"}
UNKNOWN_SESSION = "00000000-0000-4000-8000-000000000000"
# Arguments that fit the schema, for tools that need some; the session is filled in.
ARGUMENTS = {"terminal_send_command": {"command": "echo '안녕' \"$((40 + 2))\""},
             "terminal_send_key": {"key": "upArrow", "repeatCount": 2},
             "terminal_read_output": {"source": "history", "maxCharacters": 5},
             "terminal_capture_screen": {}, "terminal_focus_session": {}}


class RevisionTests:
    """The checks of one revision; the classes below say which."""

    revision = None

    def setUp(self):
        self.folder = Folder()
        self.addCleanup(self.folder.close)

    def talk(self, **more):
        """A client that has shaken hands, where its revision does."""
        conversation = Conversation(self.revision, {**environment_in(self.folder.path), **more})
        self.addCleanup(conversation.close)
        if not conversation.modern:
            conversation.initialize()
        return conversation

    def application(self, **how):
        application = FakeApplication(self.folder.path, **how)
        self.addCleanup(application.close)
        return application

    def bridge(self):
        bridge = RealBridge(self.folder.path)
        self.addCleanup(bridge.close)
        return bridge

    def schemas(self, conversation):
        """Each tool's output schema; the earliest revisions have none, but what they are answered is the same."""
        own, conversation.schema = conversation.schema, PublishedSchema(MODERN_REVISION)
        tools = conversation.result("tools/list", meta=modern_meta())["tools"]
        conversation.schema = own
        return {tool["name"]: tool["outputSchema"] for tool in tools}

    def call(self, conversation, tool, arguments=None, **how):
        return conversation.result("tools/call", {"name": tool, "arguments": arguments or {}}, **how)

    def test_lists_nine_tools_with_valid_schemas(self):
        conversation = self.talk()
        tools = conversation.result("tools/list")["tools"]
        self.assertEqual([tool["name"] for tool in tools], TOOLS)
        for tool in tools:
            with self.subTest(tool["name"]):
                self.assertLess(len(tool["description"].encode()), 2048)
                if self.revision >= "2025-03-26":
                    self.assertLessEqual(HINTS, set(tool["annotations"]))
                if self.revision >= "2025-06-18":
                    self.assertTrue(tool["title"])
                    tool_schema_validator(tool["outputSchema"])
                accepts = tool_schema_validator(tool["inputSchema"])
                self.assertIs(tool["inputSchema"]["additionalProperties"], False)
                needs_session = tool["name"] in ARGUMENTS
                self.assertEqual(accepts.is_valid({}), not needs_session)
                self.assertFalse(accepts.is_valid({"sessionId": 7}))
                session = {"sessionId": UNKNOWN_SESSION} if needs_session else {}
                self.assertTrue(accepts.is_valid({**session, **ARGUMENTS.get(tool["name"], {})}))
        conversation.end()

    def test_every_tool_fails_within_its_output_schema_without_the_application(self):
        conversation = self.talk()
        schemas = self.schemas(conversation)
        for tool in TOOLS:
            with self.subTest(tool):
                arguments = {"sessionId": UNKNOWN_SESSION, **ARGUMENTS[tool]} if tool in ARGUMENTS else {}
                envelope = expect_tool_result(self.revision, self.call(conversation, tool, arguments), schemas[tool])
                self.assertEqual(envelope["error"]["code"], "BRIDGE_UNAVAILABLE")
                self.assertIs(envelope["error"]["retryable"], True)
        conversation.end()

    def test_every_tool_works_on_a_real_terminal(self):
        self.bridge()
        conversation = self.talk()
        schemas = self.schemas(conversation)
        done = []

        def succeed(tool, **arguments):
            end = time.monotonic() + 20
            while True:
                result = self.call(conversation, tool, arguments)
                envelope = expect_tool_result(self.revision, result, schemas[tool])
                # The command before may still run, also when the shell had not read it a moment ago.
                if envelope["ok"] or envelope["error"]["code"] != "SESSION_BUSY" or time.monotonic() > end:
                    break
                time.sleep(0.02)
            self.assertTrue(envelope["ok"], envelope)
            done.append(tool)
            return result, envelope

        succeed("terminal_status")
        session = succeed("terminal_create_session", kind="window")[1]["data"]["session"]["sessionId"]

        for tool, arguments in ARGUMENTS.items():
            result, envelope = succeed(tool, sessionId=session, **arguments)
            self.assertEqual(envelope["data"]["sessionId"], session)
            if tool == "terminal_capture_screen":
                expect_picture(self.revision, result, inline=True)
        sessions = succeed("terminal_list_sessions", includeBusy=True)[1]["data"]["sessions"]
        self.assertEqual(len(sessions), 2)
        succeed("terminal_get_active_session")
        self.assertEqual(sorted(done), sorted(TOOLS))
        conversation.end()

    def test_refusals_and_warnings_fit_the_output_schema(self):
        self.bridge()
        conversation = self.talk()
        schemas = self.schemas(conversation)

        def envelope(tool, **arguments):
            return expect_tool_result(self.revision, self.call(conversation, tool, arguments), schemas[tool])

        session = envelope("terminal_create_session")["data"]["session"]["sessionId"]
        for tool, arguments in ARGUMENTS.items():
            with self.subTest(tool):
                unknown = envelope(tool, sessionId=UNKNOWN_SESSION, **arguments)
                self.assertEqual(unknown["error"]["code"], "SESSION_NOT_FOUND")
                self.assertEqual(envelope(tool, sessionId="none", **arguments)["error"]["code"], "INVALID_ARGUMENT")
        for tool, arguments in [("terminal_create_session", {"kind": "tab"}),
                                ("terminal_send_command", {"sessionId": session, "command": ""}),
                                ("terminal_send_key", {"sessionId": session, "key": "Escape"}),
                                ("terminal_send_key", {"sessionId": session, "key": "escape", "repeatCount": 51}),
                                ("terminal_read_output", {"sessionId": session, "maxCharacters": 0}),
                                ("terminal_list_sessions", {"includeBusy": "yes"})]:
            with self.subTest(tool, **arguments):
                self.assertEqual(envelope(tool, **arguments)["error"]["code"], "INVALID_ARGUMENT")
        self.assertTrue(envelope("terminal_status", unknown=1)["ok"])
        envelope("terminal_send_command", sessionId=session, command="printf '%s\\n' one two three; sleep 100")
        read = envelope("terminal_read_output", sessionId=session, maxCharacters=1)
        self.assertEqual([warning["code"] for warning in read["warnings"]], ["OUTPUT_TRUNCATED"])
        conversation.end()

    def test_a_picture_above_the_limit_is_left_to_its_link(self):
        self.bridge()
        conversation = self.talk(VELMORA_INLINE_IMAGE_BYTES="1")
        session = self.call(conversation, "terminal_create_session")
        schemas = self.schemas(conversation)
        id = expect_tool_result(self.revision, session, schemas["terminal_create_session"])["data"]["session"]["sessionId"]
        result = self.call(conversation, "terminal_capture_screen", {"sessionId": id})
        expect_tool_result(self.revision, result, schemas["terminal_capture_screen"])
        expect_picture(self.revision, result, inline=False)

    def test_what_cannot_be_served_is_an_error_of_the_protocol(self):
        conversation = self.talk()
        for method, params, code in [("terminal/run", {}, -32601), ("resources/list", {}, -32601),
                                     ("prompts/get", {"name": "x"}, -32601),
                                     ("tools/call", {"name": "terminal_run", "arguments": {}}, -32602),
                                     ("tools/call", {}, -32602), ("tools/call", {"name": 5}, -32602),
                                     ("tools/call", {"name": "terminal_status", "arguments": []}, -32602)]:
            with self.subTest(method, params=params):
                self.assertEqual(conversation.error(method, params)["code"], code)
        for text, code in [("nonsense", -32700), ('{"jsonrpc":"2.0","id":1', -32700), ("7", -32600),
                           ('{"jsonrpc":"2.0","id":null,"method":"ping"}', -32600), ("[]", -32600)]:
            with self.subTest(text):
                self.assertEqual(conversation.error_to_text(text)["code"], code)
        conversation.result("tools/list")
        conversation.end()

    def test_progress_is_told_under_the_token_and_rises(self):
        for token in ("token-1", 7):
            with self.subTest(token):
                application = FakeApplication(self.folder.path, silent=True)
                conversation = self.talk()
                schemas = self.schemas(conversation)
                call = {"name": "terminal_list_sessions", "arguments": {}}
                id = conversation.send("tools/call", call, token=token)
                application.next_request()
                conversation.first_notification()
                application.release()
                expect_tool_result(self.revision, conversation.result_of(id), schemas["terminal_list_sessions"])
                told = [each["params"] for each in conversation.notifications]
                self.assertEqual({each["method"] for each in conversation.notifications}, {"notifications/progress"})
                self.assertEqual({each["progressToken"] for each in told}, {token})
                values = [each["progress"] for each in told]
                self.assertEqual(values, sorted(set(values)))
                conversation.end()
                application.close()

    def test_nothing_is_told_without_a_token(self):
        self.bridge()
        conversation = self.talk()
        self.call(conversation, "terminal_status")
        conversation.end()
        self.assertEqual(conversation.notifications, [])

    def test_a_cancelled_call_is_never_answered_and_others_are(self):
        application = self.application(silent=True)
        conversation = self.talk()
        cancelled = conversation.send("tools/call", {"name": "terminal_status", "arguments": {}})
        kept = conversation.send("tools/call", {"name": "terminal_list_sessions", "arguments": {}})
        for _ in range(2):
            application.next_request()
        conversation.cancel(cancelled)
        application.wait_for_hangup()
        application.release()
        conversation.result_of(kept)
        conversation.notify("notifications/cancelled", {"requestId": kept})
        conversation.result("tools/list")
        conversation.end()

    def test_both_eras_are_served_in_one_process(self):
        conversation = self.talk()
        own, other = conversation.schema, PublishedSchema(
            "2025-11-25" if conversation.modern else MODERN_REVISION)
        conversation.schema = other
        if conversation.modern:
            conversation.result("initialize", initialize_params(other.revision), meta={})
            conversation.result("ping", meta={})
            conversation.result("tools/list", meta={})
        else:
            conversation.result("server/discover", meta=modern_meta())
            conversation.result("tools/list", meta=modern_meta())
        conversation.schema = own
        conversation.result("tools/list")
        conversation.end()


class LegacyTests(RevisionTests):
    def test_initialize_agrees_on_this_revision(self):
        conversation = Conversation(self.revision, environment_in(self.folder.path))
        self.addCleanup(conversation.close)
        result = conversation.initialize()
        self.assertEqual(result["protocolVersion"], self.revision)
        self.assertEqual((result["serverInfo"]["name"], "tools" in result["capabilities"]), ("velmora", True))
        self.assertLess(len(result["instructions"].encode()), 2048)
        conversation.result("ping")
        conversation.end()

    def test_initialize_offers_the_latest_legacy_revision_for_an_unknown_one(self):
        for asked in ("1999-01-01", MODERN_REVISION):
            with self.subTest(asked):
                conversation = Conversation(LEGACY_REVISIONS[-1], environment_in(self.folder.path))
                result = conversation.result("initialize", initialize_params(asked))
                self.assertEqual(result["protocolVersion"], LEGACY_REVISIONS[-1])
                conversation.end()

    def test_batches_are_answered_where_the_revision_knows_them(self):
        conversation = self.talk()
        conversation.send_text('[{"jsonrpc":"2.0","id":1,"method":"ping"}]')
        if self.revision != "2025-03-26":
            self.assertEqual(conversation.answer(None)["error"]["code"], -32600)
        else:
            self.assertEqual(conversation.batch(), [{"jsonrpc": "2.0", "id": 1, "result": {}}])
        conversation.result("ping")
        conversation.end()


class ModernTests(RevisionTests):
    def test_discover_names_what_is_served(self):
        conversation = self.talk()
        result = conversation.result("server/discover")
        self.assertIn(MODERN_REVISION, result["supportedVersions"])
        self.assertLessEqual(set(result["supportedVersions"]), set(REVISIONS))
        self.assertIn("tools", result["capabilities"])
        self.assertEqual(result["_meta"]["io.modelcontextprotocol/serverInfo"]["name"], "velmora")
        conversation.end()

    def test_an_unsupported_version_is_told_what_is_supported(self):
        conversation = self.talk()
        for method in ("server/discover", "tools/list", "tools/call"):
            error = conversation.error(method, {"name": "terminal_status"}, meta=modern_meta("1900-01-01"))
            self.assertEqual((error["code"], error["data"]["requested"]), (-32022, "1900-01-01"))
            self.assertIn(MODERN_REVISION, error["data"]["supported"])
        conversation.end()

    def test_incomplete_metadata_is_refused(self):
        conversation = self.talk()
        for missing in ("protocolVersion", "clientCapabilities"):
            meta = modern_meta()
            del meta[f"io.modelcontextprotocol/{missing}"]
            with self.subTest(missing):
                self.assertEqual(conversation.error("server/discover", meta=meta)["code"], -32602)
        self.assertEqual(conversation.error("server/discover", meta={})["code"], -32602)
        conversation.end()

    def test_methods_that_this_revision_dropped_are_unknown(self):
        conversation = self.talk()
        for method in ("ping", "logging/setLevel"):
            self.assertEqual(conversation.error(method, {"level": "info"})["code"], -32601)
        conversation.end()


class Revision20241105(LegacyTests, unittest.TestCase):
    revision = "2024-11-05"


class Revision20250326(LegacyTests, unittest.TestCase):
    revision = "2025-03-26"


class Revision20250618(LegacyTests, unittest.TestCase):
    revision = "2025-06-18"


class Revision20251125(LegacyTests, unittest.TestCase):
    revision = "2025-11-25"


class Revision20260728(ModernTests, unittest.TestCase):
    revision = "2026-07-28"


if __name__ == "__main__":
    unittest.main()
