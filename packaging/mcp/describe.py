#!/usr/bin/env python3
"""What hosts and registries of MCP servers are told of the helper, taken from the helper itself.

    describe.py manifest HELPER                 the manifest.json of a bundle (.mcpb) with HELPER in it
    describe.py server BUNDLE ADDRESS           the server.json of a registry, for BUNDLE at ADDRESS, an https URL

Names follow the domain of the application's id, app.velmora; whoever publishes proves it by a record in its DNS.
"""
import hashlib
import json
import pathlib
import platform
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
NAME = "app.velmora/terminal"
TITLE = "Velmora"
HOMEPAGE = "https://velmora.app"
SUMMARY = "Work in the user's own terminal (tmux, Terminal.app), within limits that the user sets."
DETAILS = ("The bridge between AI agents and a person's terminal: agents list the tabs as sessions, type into those that "
           "are allowed, read what they show and wait for the end. It needs the application Velmora, or velmora-headless, "
           "running under the same user. Nothing uses the network.")
SCHEMA = "https://static.modelcontextprotocol.io/schemas/2025-12-11/server.schema.json"


def version():
    return re.search(r"project\(Velmora VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text())[1]


def tools_of(helper):
    """Names and titles, as the helper tells a client."""
    messages = [
        {"jsonrpc": "2.0", "id": 1, "method": "initialize", "params": {
            "protocolVersion": "2025-11-25", "capabilities": {}, "clientInfo": {"name": "bundle", "version": "1"}}},
        {"jsonrpc": "2.0", "method": "notifications/initialized"},
        {"jsonrpc": "2.0", "id": 2, "method": "tools/list"},
    ]
    lines = "".join(json.dumps(message) + "\n" for message in messages)
    done = subprocess.run([helper], input=lines, capture_output=True, text=True, timeout=60, check=True)
    answers = {answer["id"]: answer["result"] for answer in map(json.loads, done.stdout.splitlines())}
    if answers[1]["serverInfo"]["version"] != version():
        raise SystemExit(f"{helper} is of version {answers[1]['serverInfo']['version']}, not {version()}")
    return [{"name": tool["name"], "description": tool["title"]} for tool in answers[2]["tools"]]


def manifest(helper):
    return {
        "manifest_version": "0.3",
        "name": "velmora",
        "display_name": TITLE,
        "version": version(),
        "description": SUMMARY,
        "long_description": DETAILS,
        "author": {"name": "The Velmora authors"},
        "homepage": HOMEPAGE,
        "license": "Apache-2.0",
        "keywords": ["terminal", "tmux", "shell"],
        "server": {
            "type": "binary",
            "entry_point": "bin/velmora",
            "mcp_config": {"command": "${__dirname}/bin/velmora", "args": [], "env": {}},
        },
        "tools": tools_of(helper),
        "compatibility": {"platforms": ["darwin" if platform.system() == "Darwin" else "linux"]},
    }


def server(bundle, address):
    return {
        "$schema": SCHEMA,
        "name": NAME,
        "title": TITLE,
        "description": SUMMARY,
        "version": version(),
        "websiteUrl": HOMEPAGE,
        "packages": [{
            "registryType": "mcpb",
            "identifier": address,
            "version": version(),
            "fileSha256": hashlib.sha256(pathlib.Path(bundle).read_bytes()).hexdigest(),
            "transport": {"type": "stdio"},
        }],
    }


def main(arguments):
    makers = {("manifest", 2): manifest, ("server", 3): server}
    maker = makers.get((arguments[0] if arguments else "", len(arguments)))
    if maker is None:
        raise SystemExit(__doc__)
    print(json.dumps(maker(*arguments[1:]), indent=2))


if __name__ == "__main__":
    main(sys.argv[1:])
