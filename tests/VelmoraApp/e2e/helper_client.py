"""An MCP client as simple as can be: it launches the helper and calls its tools, line by line."""

import json
import subprocess
import time


class HelperClient:
    def __init__(self, helper, environment):
        self.process = subprocess.Popen(
            [helper], env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True
        )
        self.last = 0
        client = {"name": "an e2e client", "version": "1.0"}
        self.request("initialize", {"protocolVersion": "2025-06-18", "capabilities": {}, "clientInfo": client})
        self.send({"method": "notifications/initialized"})

    def send(self, message):
        self.process.stdin.write(json.dumps({"jsonrpc": "2.0"} | message) + "\n")
        self.process.stdin.flush()

    def request(self, method, params):
        self.last += 1
        self.send({"id": self.last, "method": method, "params": params})
        answer = json.loads(self.process.stdout.readline())
        assert answer["id"] == self.last, answer
        return answer["result"]

    def call(self, tool, **arguments):
        """The tool's own result: `ok` with `data`, or `error`. A shell that has just started is waited for."""
        end = time.monotonic() + 10
        while True:
            result = self.request("tools/call", {"name": tool, "arguments": arguments})["structuredContent"]
            if result["ok"] or result["error"]["code"] != "SESSION_BUSY" or time.monotonic() > end:
                return result
            time.sleep(0.05)

    def code(self, tool, **arguments):
        """The error's code, or "ok"."""
        result = self.call(tool, **arguments)
        return "ok" if result["ok"] else result["error"]["code"]

    def close(self):
        self.process.stdin.close()
        self.process.wait(10)
