"""Plays an MCP client against the real programs. Called by demo.sh with the folder of the programs.

Everything runs in a temporary folder: its own home, data and runtime directories and its own tmux server. What was
started is ended at the end, by process id.
"""

import json
import os
import pathlib
import pwd
import shutil
import subprocess
import sys
import tempfile
import time

COMMAND = "echo '첫째 줄: 안녕 👩‍👩‍👧‍👦'\nprintf '%s|%s\\n' \"둘째 \\\"quoted\\\" \\$HOME\" 'it'\\''s 🚀; done'"
EXPECTED = ["첫째 줄: 안녕 👩", '둘째 "quoted" $HOME|it\'s 🚀; done']
DEADLINE_SECONDS = 20


class Helper:
    """The helper program on the other end of a pipe, one JSON message a line."""

    def __init__(self, program, environment):
        self.process = subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        env=environment, text=True, encoding="utf-8")
        self.next_id = 0

    def notify(self, method):
        self._write({"jsonrpc": "2.0", "method": method})

    def request(self, method, params):
        self.next_id += 1
        self._write({"jsonrpc": "2.0", "id": self.next_id, "method": method, "params": params})
        answer = json.loads(self.process.stdout.readline())
        check(answer.get("id") == self.next_id, f"an answer to request {self.next_id}, got {answer}")
        check("result" in answer, f"a result, got {answer}")
        return answer["result"]

    def call(self, tool, **arguments):
        result = self.request("tools/call", {"name": tool, "arguments": arguments})
        envelope = result["structuredContent"]
        check(envelope["ok"], f"{tool} to succeed, got {envelope.get('error')}")
        return envelope["data"]

    def close(self):
        self.process.stdin.close()
        check(self.process.wait(timeout=DEADLINE_SECONDS) == 0, "the helper to end well when its input ends")

    def _write(self, message):
        self.process.stdin.write(json.dumps(message, ensure_ascii=False) + "\n")
        self.process.stdin.flush()


def check(holds, expected):
    if not holds:
        raise SystemExit(f"demo: expected {expected}")


def step(title, outcome):
    print(f"\n== {title}", flush=True)
    for line in outcome.splitlines():
        print(f"   {line}", flush=True)


def read_until(helper, session, *expected):
    """Reads the session's output until it shows what is expected; a command is delivered, not waited for."""
    end = time.monotonic() + DEADLINE_SECONDS
    while True:
        output = helper.call("terminal_read_output", sessionId=session, source="history")
        if all(text in output["text"] for text in expected):
            return output
        check(time.monotonic() < end, f"{expected} in the output, got:\n{output['text']}")
        time.sleep(0.05)


def talk(helper):
    hello = helper.request("initialize", {"protocolVersion": "2025-11-25", "capabilities": {},
                                          "clientInfo": {"name": "demo", "version": "1"}})
    helper.notify("notifications/initialized")
    step("initialize", f"{hello['serverInfo']['name']} speaks MCP {hello['protocolVersion']}")

    tools = [tool["name"] for tool in helper.request("tools/list", {})["tools"]]
    check(len(tools) == 9, f"nine tools, got {tools}")
    step("tools/list", "\n".join(tools))

    status = helper.call("terminal_status")["status"]
    check(status["terminalState"] == "available", f"an available terminal, got {status}")
    step("terminal_status", f"terminal {status['terminalState']}, {status['windowCount']} window(s)")

    created = helper.call("terminal_create_session")["session"]
    session = created["sessionId"]
    step("terminal_create_session", f"{session} on {created['tty']}, {created['permission']}")

    sent = helper.call("terminal_send_command", sessionId=session, command="echo hello-$((40 + 2))")
    output = read_until(helper, session, "hello-42")
    step("terminal_send_command: echo hello-$((40 + 2))", sent["deliveryStatus"] + "\n" + output["text"])

    sent = helper.call("terminal_send_command", sessionId=session, command=COMMAND)
    output = read_until(helper, session, *EXPECTED)
    step("terminal_send_command: several lines, quotes, Korean, emoji",
         COMMAND + "\n-> " + sent["deliveryStatus"] + "\n" + output["text"])

    pressed = helper.call("terminal_send_key", sessionId=session, key="upArrow", repeatCount=3)
    helper.call("terminal_send_key", sessionId=session, key="return")
    end = time.monotonic() + DEADLINE_SECONDS
    while True:
        output = helper.call("terminal_read_output", sessionId=session, source="history")
        if output["text"].count("\nhello-42") == 2:
            break
        check(time.monotonic() < end, f"the repeated command's output, got:\n{output['text']}")
        time.sleep(0.05)
    step(f"terminal_send_key: {pressed['key']} x{pressed['repeatCount']}, then return (repeats the first command)",
         output["text"])

    output = helper.call("terminal_read_output", sessionId=session, maxCharacters=40)
    check(output["truncated"] and output["returnedCharacters"] == 40, f"the last 40 characters, got {output}")
    step("terminal_read_output: the last 40 characters", output["text"])

    sessions = helper.call("terminal_list_sessions")["sessions"]
    check(session in [each["sessionId"] for each in sessions] and len(sessions) == 2, f"two sessions, got {sessions}")
    step("terminal_list_sessions", "\n".join(
        f"{each['sessionId']}  {each['tty']}  {each['permission']}  busy={each['busy']}  {each['title']}"
        for each in sessions))

    picture = helper.call("terminal_capture_screen", sessionId=session)
    content = pathlib.Path(picture["imagePath"]).read_bytes()
    check(content.startswith(b"\x89PNG"), "a PNG picture")
    step("terminal_capture_screen", f"{picture['mimeType']}, {len(content)} bytes at {picture['imagePath']}")

    focused = helper.call("terminal_focus_session", sessionId=session)
    check(focused["sessionId"] == session, "the session to be focused")
    step("terminal_focus_session", f"focused at {focused['focusedAt']}")

    active = helper.call("terminal_get_active_session")["session"]
    step("terminal_get_active_session", f"{active['sessionId']} on {active['tty']}")


def main():
    programs = pathlib.Path(sys.argv[1]).resolve()
    tmux = shutil.which("tmux")
    folder = pathlib.Path(tempfile.mkdtemp(prefix="velmora-demo-", dir="/tmp"))
    home = folder / "home"
    home.mkdir()
    # What MCP clients leave a helper, plus what keeps this run to its folder.
    scrubbed = {"HOME": str(home), "PATH": os.environ["PATH"], "SHELL": "/bin/bash", "TERM": "xterm-256color",
                "USER": pwd.getpwuid(os.getuid()).pw_name, "XDG_RUNTIME_DIR": str(folder)}
    environment = dict(scrubbed, TMUX_TMPDIR=str(folder), XDG_DATA_HOME=str(folder / "data"),
                       XDG_CONFIG_HOME=str(folder / "config"), LANG="C.UTF-8")
    socket = folder / f"tmux-{os.getuid()}" / "default"
    bridge = None
    try:
        subprocess.run([tmux, "-f", "/dev/null", "new-session", "-d", "-x", "100", "-y", "30"], env=environment,
                       check=True)
        bridge = subprocess.Popen([programs / "velmora-headless"], env=environment, stdout=subprocess.PIPE, text=True)
        ready = bridge.stdout.readline().strip()
        check(ready, "the bridge to say where it listens")
        step("velmora-headless", f"listens at {ready}")
        helper = Helper(programs / "velmora", scrubbed)
        talk(helper)
        helper.close()
        bridge.terminate()
        check(bridge.wait(timeout=DEADLINE_SECONDS) == 0, "the bridge to end well")
        check(not os.path.exists(ready), "no socket left behind")
        step("end", "the helper and the bridge ended well; the tmux sessions outlived them")
        print("\ndemo: every step came back as it should")
    finally:
        if bridge is not None and bridge.poll() is None:
            bridge.terminate()
            bridge.wait(timeout=DEADLINE_SECONDS)
        if socket.exists():
            subprocess.run([tmux, "-S", str(socket), "kill-server"], env=environment, check=False)
        shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    main()
