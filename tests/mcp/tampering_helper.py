"""Stands between a client and the real helper and spoils what the helper says, to prove that the checks notice.

    python3 tampering_helper.py PATH-OF-VELMORA FAULT
"""

import copy
import json
import os
import signal
import subprocess
import sys
import threading


def _at(message, path):
    """The object that holds the last member of the path, or nothing."""
    for key in path[:-1]:
        known = isinstance(message, dict) and key in message or isinstance(message, list) and key < len(message)
        if not known:
            return None
        message = message[key]
    held = isinstance(message, dict) and path[-1] in message
    return message if held else None


def without(*path):
    def spoil(message):
        if (holder := _at(message, path)) is not None:
            del holder[path[-1]]
        return [message]
    return spoil


def having(value, *path):
    """`value` instead of what stands at the path; nothing happens where there is no such member."""
    def spoil(message):
        if (holder := _at(message, path)) is not None:
            holder[path[-1]] = value
        return [message]
    return spoil


def in_envelope(change):
    """Spoils the envelope of a tool's answer, in both places alike."""
    def spoil(message):
        envelope = message.get("result", {}).get("structuredContent")
        if envelope is not None:
            change(envelope)
            block = message["result"]["content"][0]
            words = block["text"].partition("\n")[0] + "\n" if message["result"]["isError"] else ""
            block["text"] = words + json.dumps(envelope)
        return [message]
    return spoil


def twice(message):
    return [message, copy.deepcopy(message)] if "content" in message.get("result", {}) else [message]


def noisy(message):
    return ["velmora: starting", message]


def with_block(block):
    def spoil(message):
        if "content" in message.get("result", {}):
            message["result"]["content"].append(block)
        return [message]
    return spoil


def falling(message):
    if message.get("method") == "notifications/progress":
        return [message, copy.deepcopy(message)]
    return [message]


def unasked_progress(message):
    progress = {"jsonrpc": "2.0", "method": "notifications/progress", "params": {"progressToken": 1, "progress": 1}}
    return [progress, message] if "content" in message.get("result", {}) else [message]


def unwrapped(message):
    return message if isinstance(message, list) else [message]


RESULT, TOOL = "result", ("result", "tools", 3)
FAULTS = {
    "none": lambda message: [message],
    "noise": noisy,
    "second answer": twice,
    "id of another kind": lambda message: [{**message, "id": str(message.get("id"))}],
    "another JSON-RPC": having("1.0", "jsonrpc"),
    "version of another kind": having(20251125, RESULT, "protocolVersion"),
    "no capabilities": without(RESULT, "capabilities"),
    "nobody's version": without(RESULT, "serverInfo", "version"),
    "no resultType": without(RESULT, "resultType"),
    "unheard-of resultType": having("done", RESULT, "resultType"),
    "no ttlMs": without(RESULT, "ttlMs"),
    "broken ttlMs": having(1.5, RESULT, "ttlMs"),
    "unheard-of cacheScope": having("shared", RESULT, "cacheScope"),
    "no supportedVersions": without(RESULT, "supportedVersions"),
    "member of a later revision": lambda message: [{**message, "result": {**message["result"], "ttlMs": 1}}
                                                   if "tools" in message.get("result", {}) else message],
    "nameless tool": without(*TOOL, "name"),
    "tool too few": lambda message: [message["result"]["tools"].pop() and message
                                     if "tools" in message.get("result", {}) else message],
    "hint too few": without(*TOOL, "annotations", "openWorldHint"),
    "input that is no object": having("array", *TOOL, "inputSchema", "type"),
    "no JSON Schema for input": having({"kind": {"type": "sting"}}, *TOOL, "inputSchema", "properties"),
    "no JSON Schema for output": having({"ok": {"type": 7}}, *TOOL, "outputSchema", "properties"),
    "texts differ": having("{}", RESULT, "content", 0, "text"),
    "wordless block": without(RESULT, "content", 0, "text"),
    "unheard-of block": with_block({"type": "video", "data": ""}),
    "link that an early client cannot know": with_block({"type": "resource_link", "name": "x", "uri": "file:///x"}),
    "link that is no URI": having("/tmp/a picture.png", RESULT, "content", 1, "uri"),
    "picture that is no base64": having("!", RESULT, "content", 2, "data"),
    "another picture": having("iVBORw0KGgo=", RESULT, "content", 2, "data"),
    "isError contradicts": having(False, RESULT, "isError"),
    "payload of another kind": in_envelope(lambda envelope: envelope["data"]["status"].update(sessionCount="many")),
    "payload too small": in_envelope(lambda envelope: envelope["data"]["status"].pop("mcpState")),
    "date as a number": in_envelope(lambda envelope: envelope["data"]["status"].update(updatedAt=1000.25)),
    "failure without its code": in_envelope(lambda envelope: envelope.get("error", {}).pop("code", None)),
    "wordless error": without("error", "message"),
    "error code as text": having("-32601", "error", "code"),
    "another error code": having(-32000, "error", "code"),
    "no supported versions": without("error", "data", "supported"),
    "progress that stands still": falling,
    "progress for another": having("other", "params", "progressToken"),
    "progress for nobody": unasked_progress,
    "batch in pieces": unwrapped,
}


def spoil_lines(source, fault):
    for line in source:
        for message in FAULTS[fault](json.loads(line)):
            text = message if isinstance(message, str) else json.dumps(message, ensure_ascii=False)
            os.write(1, text.encode() + b"\n")


def main():
    program, fault = sys.argv[1:]
    helper = subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    signal.signal(signal.SIGTERM, lambda *_: helper.terminate())
    answers = threading.Thread(target=spoil_lines, args=(helper.stdout, fault))
    answers.start()
    while data := os.read(0, 1 << 16):
        helper.stdin.write(data)
        helper.stdin.flush()
    helper.stdin.close()
    answers.join()
    sys.exit(helper.wait())


if __name__ == "__main__":
    main()
