"""After many connections have gone nothing of them is left."""

import time
import uuid
from concurrent.futures import ThreadPoolExecutor

from clients import eventually
from laboratory import Laboratory, descriptors, resident_megabytes

CONNECTIONS = 64
MEGABYTES = 20


def run(seconds, report):
    with Laboratory() as laboratory:
        panes = [laboratory.new_pane() for _ in range(4)]
        bridge = laboratory.start_bridge()
        ids = [laboratory.idle_session(pane) for pane in panes]
        time.sleep(0.2)
        before = descriptors(bridge.pid)
        idle = resident_megabytes(bridge.pid)

        def one(number):
            client = laboratory.client(seconds=60)
            session = ids[number % 4]
            for _ in range(5):
                client.call("terminal_status")
                client.call("terminal_list_sessions")
                client.call("terminal_read_output", sessionId=session, source="history", maxCharacters=50000)
                # As large as a request may be, and refused: there is no such session.
                client.call("terminal_send_command", sessionId=str(uuid.uuid4()), command="x" * 65536, padding="y" * 900000)
            client.close()

        with ThreadPoolExecutor(CONNECTIONS) as clients:
            list(clients.map(one, range(CONNECTIONS)))
        small = eventually(lambda: resident_megabytes(bridge.pid) <= MEGABYTES, 5, every=0.2)
        after = resident_megabytes(bridge.pid)
        report.check(f"{CONNECTIONS} connections gone: the bridge has at most {MEGABYTES} MB", small,
                     f"{after:.0f} MB, {idle:.0f} when idle before")
        same = eventually(lambda: descriptors(bridge.pid) == before, 5, every=0.2)
        report.check(f"{CONNECTIONS} connections gone: descriptors as before", same,
                     f"{descriptors(bridge.pid)}, before {before}")
