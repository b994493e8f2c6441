"""What the result of a tool call must be, beyond the published schema."""

import base64
import datetime
import json
import pathlib
import re

from published_schema import Misfit, REVISIONS, expect_fit, tool_schema_validator

STRUCTURED_SINCE = REVISIONS.index("2025-06-18")
MODERN_SINCE = REVISIONS.index("2026-07-28")


def _expect(holds, complaint):
    if not holds:
        raise Misfit(complaint)


def envelope_of(result):
    """The answer that the result carries as text; the text block that holds it is the first."""
    return json.loads(_words_and_json(result)[1])


def _words_and_json(result):
    """The first text block: of a failure, a line in words stands before the JSON."""
    blocks = [block["text"] for block in result["content"] if block["type"] == "text"]
    _expect(blocks, "a text block is missing")
    text = blocks[0]
    if text.startswith("{"):
        return "", text
    words, _, rest = text.partition("\n")
    return words, rest


def expect_tool_result(revision, result, output_schema):
    """`result` of a tools/call, whether it succeeded or not. Returns its envelope, or throws Misfit."""
    envelope = envelope_of(result)
    if REVISIONS.index(revision) >= STRUCTURED_SINCE:
        _expect(result.get("structuredContent") == envelope, "structuredContent and the text differ")
        _expect(result["content"][0]["type"] == "text", "the text comes first")
    _expect(result.get("isError", False) is (not envelope["ok"]), "isError contradicts ok")
    if REVISIONS.index(revision) >= MODERN_SINCE:
        _expect(result["resultType"] == "complete", f"resultType is {result['resultType']}")
    expect_fit(tool_schema_validator(output_schema), envelope, "the tool's outputSchema")
    _expect(("data" in envelope) == envelope["ok"] and ("error" in envelope) != envelope["ok"],
            "data stands beside ok, and error beside a failure, and nothing else does")
    if not envelope["ok"]:
        _expect(re.fullmatch("[A-Z_]+", envelope["error"]["code"]), "the error's code is not upper case")
        _expect(envelope["error"]["message"] and envelope["error"]["recoverySuggestion"], "the error says too little")
        error = envelope["error"]
        words = _words_and_json(result)[0]
        _expect(words == f"{error['message']} {error['recoverySuggestion']} ({error['code']})", f"the words: {words!r}")
    _expect_dates(envelope)
    return envelope


def _expect_dates(value):
    if isinstance(value, dict):
        for key, member in value.items():
            if key.endswith("At"):
                _expect(isinstance(member, str) and _is_instant(member), f"{key} is no ISO 8601 date: {member!r}")
            _expect_dates(member)
    elif isinstance(value, list):
        for each in value:
            _expect_dates(each)


def _is_instant(text):
    try:
        return datetime.datetime.fromisoformat(text).tzinfo is not None
    except ValueError:
        return False


def expect_picture(revision, result, inline):
    """The blocks of a capture beside its text: a link to the file, where the revision knows links, and the picture."""
    path = pathlib.Path(envelope_of(result)["data"]["imagePath"])
    _expect(path.read_bytes().startswith(b"\x89PNG"), "the file is no PNG")
    links = [block for block in result["content"] if block["type"] == "resource_link"]
    if REVISIONS.index(revision) >= STRUCTURED_SINCE:
        _expect([link["uri"] for link in links] == [path.as_uri()], f"one link to {path.as_uri()}, not {links}")
        _expect(links[0]["mimeType"] == "image/png", "the link says what it leads to")
    images = [block for block in result["content"] if block["type"] == "image"]
    if inline:
        _expect([image["mimeType"] for image in images] == ["image/png"], "one picture inline")
        _expect(base64.b64decode(images[0]["data"], validate=True) == path.read_bytes(), "the picture is the file's")
    else:
        _expect(not images, "no picture inline")
