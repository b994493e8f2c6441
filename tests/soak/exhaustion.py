"""Descriptors run out and are free again: the bridge serves on, or it has ended and said why; it is never deaf."""

import os
import resource
import time

from clients import SocketClient, eventually
from laboratory import Laboratory


def run(seconds, report):
    with Laboratory() as laboratory:
        laboratory.new_pane()
        bridge = laboratory.start_bridge()
        laboratory.sessions()
        used = max(int(name) for name in os.listdir(f"/proc/{bridge.pid}/fd")) + 1
        limits = resource.prlimit(bridge.pid, resource.RLIMIT_NOFILE)
        resource.prlimit(bridge.pid, resource.RLIMIT_NOFILE, (used, limits[1]))
        clients = []
        try:
            clients = [SocketClient(laboratory.socket, seconds=1) for _ in range(4)]
        except OSError:
            pass  # it has ended already
        eventually(lambda: bridge.poll() is not None, 1)
        for client in clients:
            client.close()
        if bridge.poll() is None:
            resource.prlimit(bridge.pid, resource.RLIMIT_NOFILE, limits)
        eventually(lambda: bridge.poll() is not None or laboratory.answers(), 5, every=0.2)
        said = laboratory.said().strip()
        if bridge.poll() is None:
            report.check("descriptors exhausted and free again: the bridge serves or has ended", laboratory.answers(),
                         "it lives and nobody answers")
        else:
            report.check("descriptors exhausted: the bridge ends with a failure", bridge.returncode > 0,
                         f"exit status {bridge.returncode}")
        report.check("descriptors exhausted: the bridge says why", "descriptor" in said or "open files" in said,
                     said[-200:] or "not a word")

    with Laboratory() as laboratory:
        laboratory.new_pane()
        laboratory.start_bridge(preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (256, 4096)))
        clients = []
        try:
            for _ in range(400):
                clients.append(SocketClient(laboratory.socket, seconds=0.3))
        except OSError:
            pass  # the rest waits in the queue, or nobody listens any more
        time.sleep(0.2)
        for client in clients:
            client.close()
        begun = time.monotonic()
        served = eventually(laboratory.answers, 5, every=0.2)
        report.check("400 idle connections under a soft limit of 256: served afterwards", served,
                     f"{len(clients)} connected, {time.monotonic() - begun:.1f} s" if served
                     else f"{len(clients)} connected, then nobody answers; it lives: {laboratory.bridge.poll() is None}")
