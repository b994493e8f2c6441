"""How the application lives and ends: beside another bridge, without descriptors, without a display, and when its
display or its terminal goes. Run it under a display and a session bus of its own:
xvfb-run -a dbus-run-session -- /usr/bin/python3 life_test.py FOLDER_OF_THE_PROGRAMS"""

import json
import os
import pathlib
import resource
import signal
import socket
import subprocess
import sys

from accessible_window import AccessibleWindow, eventually
from desktop import check, play
from helper_client import HelperClient
from status_notifier_host import StatusNotifierHost

programs = pathlib.Path(sys.argv[1])


def socket_of(desktop):
    return pathlib.Path(desktop.home, "app.velmora.Velmora/control-v1.sock")


def keep_a_history(desktop):
    """From now on, until the end: the settings say that it is deleted then."""
    desktop.settings.parent.mkdir(parents=True, exist_ok=True)
    desktop.settings.write_text(json.dumps({"schemaVersion": 1, "settings": {"persistentHistoryEnabled": True}}))


def leave_a_record(desktop):
    client = HelperClient(programs / "velmora", desktop.environment)
    session = client.call("terminal_list_sessions")["data"]["sessions"][0]["sessionId"]
    check("a client sends a command", client.code("terminal_send_command", sessionId=session, command="echo kept") == "ok")
    client.close()
    history = desktop.settings.with_name("history.json")
    eventually(history.exists, "history.json")
    return history


def beside_another_bridge(desktop):
    keep_a_history(desktop)
    headless = subprocess.Popen([programs / "velmora-headless"], env=desktop.environment, stdout=subprocess.PIPE)
    desktop.children.append(headless)
    headless.stdout.readline()
    history = leave_a_record(desktop)
    tray = StatusNotifierHost()

    app = desktop.start()
    window = AccessibleWindow("Velmora")
    start = f"Another bridge of yours is serving: velmora-headless, process {headless.pid}, since "
    eventually(lambda: any(name.startswith(start) for name in window.names("heading")), start)
    check("beside another bridge the window names it", True)
    check("and has nothing else to press", sorted(window.names("push button")) == ["End it and take over", "Quit"])
    eventually(tray.has_item, "the status item is there")
    labels = ["Another bridge is serving", "Open Velmora", "Open Permission Settings"]
    check("the tray offers no pause", eventually(lambda: tray.labels() == labels, labels))
    window.press("push button", "Quit")
    check("quitting ends it well", app.wait(10) == 0)
    check("and leaves the other bridge's history", history.exists() and headless.poll() is None)

    app = desktop.start()
    window = AccessibleWindow("Velmora")
    window.press("push button", "End it and take over")
    window.see("label", "Bridge: Active")
    check("taken over, the other has ended well", headless.wait(10) == 0)
    client = HelperClient(programs / "velmora", desktop.environment)
    session = client.call("terminal_list_sessions")["data"]["sessions"][0]["sessionId"]
    window.press("push button", "Pause MCP changes")
    window.see("label", "Bridge: Paused")
    sent = client.code("terminal_send_command", sessionId=session, command="echo never")
    check("and the pause is ours", sent == "MCP_PAUSED")
    client.close()
    app.send_signal(signal.SIGTERM)
    check("a termination ends it well", app.wait(10) == 0)


def in_another_runtime_folder(desktop):
    elsewhere = pathlib.Path(desktop.home, "elsewhere")
    elsewhere.mkdir(mode=0o700)
    environment = desktop.environment | {"XDG_RUNTIME_DIR": str(elsewhere)}
    headless = subprocess.Popen([programs / "velmora-headless"], env=environment, stdout=subprocess.PIPE)
    desktop.children.append(headless)
    headless.stdout.readline()

    app = desktop.start()
    window = AccessibleWindow("Velmora")
    start = f"Another bridge of yours is serving: velmora-headless, process {headless.pid}, since "
    eventually(lambda: any(name.startswith(start) for name in window.names("heading")), start)
    check("a bridge that has only the data folder is named, too", True)
    window.press("push button", "End it and take over")
    window.see("label", "Bridge: Active")
    check("taken over, the other has ended well", headless.wait(10) == 0)
    app.send_signal(signal.SIGTERM)
    check("a termination ends it well", app.wait(10) == 0)


# The allocator's arenas beside the first lie on multiples of 64 MiB, see arena.c of the GNU C library. A program under a
# sanitizer has none of them; other memory, in terabytes, lies there.
def arenas_of(process):
    lines = pathlib.Path(f"/proc/{process}/maps").read_text().splitlines()
    places = [[int(bound, 16) for bound in line.split()[0].split("-")] for line in lines if " rw-p " in line]
    if any(end - start > 1 << 40 for start, end in places):
        return 0
    return sum(start % (64 << 20) == 0 for start, _ in places)


def many_connections(desktop):
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (256, hard))
    app = desktop.start()
    resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))
    AccessibleWindow("Velmora").see("label", "Status: available")
    limit = resource.prlimit(app.pid, resource.RLIMIT_NOFILE)[0]
    check("a low limit of descriptors is raised", limit == min(1024, hard))
    connections = []
    for _ in range(64):
        client = socket.socket(socket.AF_UNIX)
        client.connect(str(socket_of(desktop)))
        connections.append(client)
    threads = pathlib.Path(f"/proc/{app.pid}/task")
    eventually(lambda: len(list(threads.iterdir())) > 64, "a thread a connection")
    client = HelperClient(programs / "velmora", desktop.environment)
    check("beside 64 connections a client is answered", client.code("terminal_status") == "ok")
    client.close()
    check("all threads share two arenas", arenas_of(app.pid) <= 1)
    for connection in connections:
        connection.close()
    app.send_signal(signal.SIGTERM)
    check("a termination ends it well", app.wait(10) == 0)


def without_descriptors(desktop):
    app = desktop.start()
    window = AccessibleWindow("Velmora")
    window.see("label", "Status: available")
    limits = resource.prlimit(app.pid, resource.RLIMIT_NOFILE)
    used = len(os.listdir(f"/proc/{app.pid}/fd"))
    resource.prlimit(app.pid, resource.RLIMIT_NOFILE, (used // 2, limits[1]))
    status = [programs / "velmora", "status"]
    subprocess.run(status, env=desktop.environment, capture_output=True, check=False)
    window.see("push button", "Restart the bridge")
    check("without descriptors it says that nobody can connect", app.poll() is None and not socket_of(desktop).exists())
    resource.prlimit(app.pid, resource.RLIMIT_NOFILE, limits)
    window.press("push button", "Restart the bridge")
    eventually(lambda: "Restart the bridge" not in window.names("push button"), "it serves again")
    client = HelperClient(programs / "velmora", desktop.environment)
    check("restarted in the same process, clients connect", client.code("terminal_status") == "ok" and app.poll() is None)
    client.close()
    app.send_signal(signal.SIGTERM)
    check("a termination ends it well", app.wait(10) == 0)


def a_hang_up(desktop):
    keep_a_history(desktop)
    app = desktop.start()
    AccessibleWindow("Velmora").see("label", "Status: available")
    history = leave_a_record(desktop)
    app.send_signal(signal.SIGHUP)
    check("a terminal that closes ends it well", app.wait(10) == 0)
    check("deletes the history, as the settings say", not history.exists())
    check("and the socket goes", not socket_of(desktop).exists())


def a_lost_display(desktop):
    keep_a_history(desktop)
    reading, writing = os.pipe()
    command = ["Xvfb", "-displayfd", str(writing), "-nolisten", "tcp"]
    server = subprocess.Popen(command, env=desktop.environment, pass_fds=[writing], stderr=subprocess.DEVNULL)
    desktop.children.append(server)
    os.close(writing)
    with os.fdopen(reading) as number:
        display = f":{number.readline().strip()}"
    app = desktop.start(DISPLAY=display)
    AccessibleWindow("Velmora").see("label", "Status: available")
    history = leave_a_record(desktop)
    server.kill()
    check("a lost display ends it as failed", app.wait(10) == 1)
    check("deletes the history, as the settings say", not history.exists())
    check("and the socket goes", not socket_of(desktop).exists())


def run(desktop, *arguments, **variables):
    environment = {name: value for name, value in (desktop.environment | variables).items() if value}
    command = [programs / "velmora-app", *arguments]
    return subprocess.run(command, env=environment, capture_output=True, text=True, timeout=20, check=False)


def words_instead_of_a_start(desktop):
    for argument, words in (("--help", "Usage: velmora-app"), ("--version", "velmora-app ")):
        ended = run(desktop, argument)
        check(f"{argument} is answered", ended.returncode == 0 and ended.stdout.startswith(words))
    for place, variables in (("", {}), (", without a display too", {"DISPLAY": ""})):
        ended = run(desktop, "--hlep", **variables)
        said = 'takes no arguments such as "--hlep"' in ended.stderr and "display" not in ended.stderr
        check(f"what it does not know is refused{place}", ended.returncode == 2 and said)
    for display in ("", ":4711"):
        ended = run(desktop, DISPLAY=display)
        said = "no display: start velmora-headless" in ended.stderr
        check(f"without a display ({display or 'none'}) it says so", said and ended.returncode == 1)
    check("and nothing was started", not socket_of(desktop).exists())


if __name__ == "__main__":
    scenes = [
        beside_another_bridge,
        in_another_runtime_folder,
        many_connections,
        without_descriptors,
        a_hang_up,
        a_lost_display,
        words_instead_of_a_start,
    ]
    play(programs, scenes, introduced=True)
