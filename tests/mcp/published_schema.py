"""The published JSON Schemas of the protocol's revisions, and whether a message fits them."""

import base64
import binascii
import functools
import json
import pathlib
import re

import jsonschema

LEGACY_REVISIONS = ["2024-11-05", "2025-03-26", "2025-06-18", "2025-11-25"]
MODERN_REVISION = "2026-07-28"
REVISIONS = [*LEGACY_REVISIONS, MODERN_REVISION]
SERVER_IN_META = "io.modelcontextprotocol/serverInfo"
SCHEMAS = pathlib.Path(__file__).with_name("schemas")

# The errors that may answer a message whose id could not be read. The earlier schemas demand an id of every error, so
# there it is `null`, as JSON-RPC has it; the later ones let it be left out.
CODES_WITHOUT_ID = {-32700, -32600}

_formats = jsonschema.FormatChecker(formats=())


@_formats.checks("byte", raises=binascii.Error)
def _is_base64(text):
    base64.b64decode(text, validate=True)
    return True


@_formats.checks("uri")
def _is_uri(text):
    return re.fullmatch(r"[A-Za-z][A-Za-z0-9+.-]*:[!-~]+", text) is not None


class Misfit(AssertionError):
    """A value does not fit its schema; the text says where."""


def expect_fit(validator, value, what):
    errors = sorted(validator.iter_errors(value), key=lambda error: len(error.absolute_path), reverse=True)
    if errors:
        reasons = "; ".join(f"{error.json_path}: {error.message[:300]}" for error in errors[:3])
        raise Misfit(f"{what}: {reasons}")


def tool_schema_validator(schema):
    """For a schema that a tool advertises. Throws when it is none of JSON Schema 2020-12."""
    return _validator_of_text(json.dumps(schema, sort_keys=True))


# To check a schema takes ten times as long as a call to the bridge, and every answer of a tool has the same.
@functools.lru_cache(maxsize=None)
def _validator_of_text(text):
    schema = json.loads(text)
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema, format_checker=_formats)


class PublishedSchema:
    def __init__(self, revision):
        self.revision = revision
        self._document = json.loads((SCHEMAS / f"schema-{revision}.json").read_text())
        self._key = "$defs" if "$defs" in self._document else "definitions"

    def has(self, definition):
        return definition in self._document[self._key]

    @functools.lru_cache(maxsize=None)
    def _validator(self, definition):
        schema = {"$schema": self._document["$schema"], "$ref": f"#/{self._key}/{definition}",
                  self._key: self._document[self._key]}
        return jsonschema.validators.validator_for(schema)(schema, format_checker=_formats)

    def expect(self, definition, value):
        """Throws Misfit unless `value` fits the definition."""
        expect_fit(self._validator(definition), value, f"{definition} of {self.revision}")

    def expect_known_members(self, definition, value):
        """Results are open to further members, but an early client is better off without those of later revisions."""
        unknown = set(value) - set(self._document[self._key][definition]["properties"]) - {"_meta"}
        if unknown:
            raise Misfit(f"{definition} of {self.revision} has no {sorted(unknown)}")

    def expect_message(self, message):
        """A message of the server: an answer, an error or a notification."""
        if isinstance(message, list):
            self.expect("JSONRPCBatchResponse", message)
            for each in message:
                self.expect_message(each)
        elif "method" in message:
            self.expect("JSONRPCNotification", message)
            self.expect("ServerNotification", message)
        elif "error" in message:
            self._expect_error(message)
        else:
            self.expect("JSONRPCResultResponse" if self.has("JSONRPCResultResponse") else "JSONRPCResponse", message)

    def expect_result(self, method, message):
        """The result that answers a request of `method`."""
        definition = {"initialize": "InitializeResult", "server/discover": "DiscoverResult", "ping": "EmptyResult",
                      "tools/list": "ListToolsResult", "tools/call": "CallToolResult"}[method]
        result = message["result"]
        self.expect(definition, result)
        if method != "ping":
            self.expect_known_members(definition, result)
        for tool in result.get("tools", []):
            self.expect_known_members("Tool", tool)
        for server in filter(None, (result.get("serverInfo"), result.get("_meta", {}).get(SERVER_IN_META))):
            self.expect("Implementation", server)
            self.expect_known_members("Implementation", server)
            for icon in server.get("icons", []):
                self.expect_known_members("Icon", icon)
        if self.has(definition + "Response"):
            self.expect(definition + "Response", message)

    def _expect_error(self, message):
        definition = "JSONRPCErrorResponse" if self.has("JSONRPCErrorResponse") else "JSONRPCError"
        if "id" in self._document[self._key][definition]["required"]:
            if message.get("id", 0) is None and message["error"].get("code") in CODES_WITHOUT_ID:
                message = {**message, "id": 0}
        elif "id" not in message and message["error"].get("code") not in CODES_WITHOUT_ID:
            raise Misfit(f"an error without an id: {message}")
        self.expect(definition, message)
        self.expect("JSONRPCMessage", message)
        named = {-32700: "ParseError", -32600: "InvalidRequestError", -32601: "MethodNotFoundError",
                 -32602: "InvalidParamsError", -32603: "InternalError"}.get(message["error"]["code"])
        if named and self.has(named):
            self.expect(named, message["error"])
        if message["error"]["code"] == -32022:
            self.expect("UnsupportedProtocolVersionError", message)
