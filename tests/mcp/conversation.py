"""A client of one revision that checks every line which the helper writes."""

import json

from helper_process import HelperProcess
from published_schema import MODERN_REVISION, Misfit, PublishedSchema

REQUESTS = {"initialize": "InitializeRequest", "server/discover": "DiscoverRequest", "ping": "PingRequest",
            "tools/list": "ListToolsRequest", "tools/call": "CallToolRequest"}
CLIENT = {"name": "schema-check", "version": "1.0"}


def modern_meta(revision=MODERN_REVISION):
    return {"io.modelcontextprotocol/protocolVersion": revision, "io.modelcontextprotocol/clientInfo": CLIENT,
            "io.modelcontextprotocol/clientCapabilities": {}}


def initialize_params(revision):
    return {"protocolVersion": revision, "capabilities": {}, "clientInfo": CLIENT}


def checked_message(schema, line):
    """The message in a line of the output. Throws Misfit when it is none that a server may send."""
    try:
        message = json.loads(line)
    except ValueError as error:
        raise Misfit(f"not JSON: {line[:200]}") from error
    schema.expect_message(message)
    return message


class Conversation:
    """Requests of the stateless revision carry their metadata by themselves; for the others call `initialize`."""

    def __init__(self, revision, environment):
        self.schema = PublishedSchema(revision)
        self.modern = revision == MODERN_REVISION
        self.notifications = []  # in the order in which they came
        self._helper = HelperProcess(environment)
        self._methods = {}  # of the requests that have no answer yet, by id
        self._answers = {}
        self._last_id = 0

    def initialize(self):
        result = self.result("initialize", initialize_params(self.schema.revision))
        self.notify("notifications/initialized")
        return result

    def notify(self, method, params=None):
        message = {"jsonrpc": "2.0", "method": method}
        if params is not None:
            message["params"] = params
        self.schema.expect("JSONRPCNotification", message)
        self.schema.expect("ClientNotification", message)
        self._helper.send(message)

    def send(self, method, params=None, token=None, meta=None, proper=True):
        """Sends a request and returns its id. A proper one is itself checked against the published schema."""
        self._last_id += 1
        id = self._last_id if self._last_id % 2 else f"request-{self._last_id}"
        params = dict(params or {})
        if meta is None and self.modern:
            meta = modern_meta()
        if token is not None:
            meta = {**(meta or {}), "progressToken": token}
        if meta:
            params["_meta"] = meta
        message = {"jsonrpc": "2.0", "id": id, "method": method, **({"params": params} if params else {})}
        if proper:
            self.schema.expect(REQUESTS[method], message)
        self._methods[id] = method
        self._helper.send(message)
        return id

    def send_text(self, text):
        self._helper.write(text.encode() + b"\n")

    def answer(self, id):
        """Waits for the answer to a request."""
        while id not in self._answers:
            self._receive()
        return self._answers.pop(id)

    def batch(self):
        """The next line, which answers a batch."""
        messages = checked_message(self.schema, self._helper.read_line())
        if not isinstance(messages, list):
            raise Misfit(f"the answer to a batch was expected: {messages}")
        return messages

    def result(self, method, params=None, **how):
        return self.result_of(self.send(method, params, **how))

    def result_of(self, id):
        message = self.answer(id)
        if "result" not in message:
            raise Misfit(f"a result was expected: {message}")
        return message["result"]

    def error(self, method, params=None, **how):
        message = self.answer(self.send(method, params, proper=False, **how))
        if "error" not in message:
            raise Misfit(f"an error was expected: {str(message)[:300]}")
        return message["error"]

    def error_to_text(self, text):
        """The error that answers a line from which no id could be read."""
        self.send_text(text)
        return self.answer(None)["error"]

    def cancel(self, id):
        """From now on an answer to this request would be wrong."""
        del self._methods[id]
        self.notify("notifications/cancelled", {"requestId": id, "reason": "No longer needed."})

    def first_notification(self, fits=lambda notification: True):
        """Waits for one that fits, which may have come before."""
        while not (fitting := list(filter(fits, self.notifications))):
            self._receive()
        return fitting[0]

    def end(self):
        """Closes the input: nothing may be left to say, and the helper ends well."""
        status, rest, errors = self._helper.end()
        for line in rest.splitlines():
            self._take(line)
        if self._answers or status != 0 or errors:
            raise Misfit(f"at the end: status {status}, answers {self._answers}, standard error {errors!r}")

    def close(self):
        self._helper.close()

    def _receive(self):
        self._take(self._helper.read_line())

    def _take(self, line):
        message = checked_message(self.schema, line)
        if "method" in message:
            self.notifications.append(message)
            return
        id = message.get("id")
        if id is None and "error" in message:
            self._answers[None] = message
            return
        if id not in self._methods or isinstance(id, bool):
            raise Misfit(f"an answer to nothing that was asked, or a second one: {line[:300]}")
        method = self._methods.pop(id)
        if "result" in message:
            self.schema.expect_result(method, message)
        self._answers[id] = message
