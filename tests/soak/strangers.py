"""What programs and clients choose freely (titles, characters, names, ids) is bounded and changes nothing else."""

import json
import pathlib
import uuid

from clients import Gone, NoAnswer, eventually, outcome, sentence
from laboratory import KEPT_HISTORY, Laboratory


def titles(report):
    with Laboratory() as laboratory:
        title = laboratory.home / "title"
        title.write_text("\033]2;" + "T" * 300_000 + "\a")
        panes = [laboratory.new_pane(f"cat {title}; exec sleep 1000") for _ in range(4)]
        laboratory.start_bridge()
        eventually(lambda: all(laboratory.tmux("display-message", "-p", "-t", pane, "#{=1:pane_title}") == "T"
                               for pane in panes), 5)
        try:
            size = len(json.dumps(laboratory.call("terminal_list_sessions")))
        except (Gone, NoAnswer) as error:
            report.check("titles of 300 kB: sessions can be listed", False, f"the connection: {error}")
            return
        report.check("titles of 300 kB: sessions can be listed, in few bytes", size < 20_000, f"{size} bytes")


def characters(report):
    """Many code points that join into one character; characters of many bytes."""
    with Laboratory() as laboratory:
        joined = laboratory.home / "joined"
        joined.write_text("a" + "\u0903" * 100_000 + "\n")
        large = laboratory.home / "large"
        large.write_text(("\u20ac" + "\u0301" * 9) * 52_000 + "\n")
        pane = laboratory.new_pane()
        laboratory.start_bridge()
        id = laboratory.idle_session(pane)
        for words, file, limit, bytes_at_most in (
                ("100,000 marks on one letter, 40 characters asked for", joined, 40, 4096),
                ("characters of 21 bytes, 50,000 asked for", large, 50_000, 1 << 20)):
            laboratory.call("terminal_send_command", sessionId=id, command=f"clear; cat {file}")
            laboratory.idle_session(pane)
            try:
                answer = laboratory.call("terminal_read_output", sessionId=id, source="history", maxCharacters=limit)
            except (Gone, NoAnswer) as error:
                report.check(f"{words}: the read is answered", False, f"the connection: {error}")
                continue
            size = len(answer["data"]["text"].encode()) if answer["ok"] else 0
            report.check(f"{words}: the answer is bounded", size <= bytes_at_most, f"{outcome(answer)}, {size} bytes")


def long_names(report):
    with Laboratory(**KEPT_HISTORY) as laboratory:
        pane = laboratory.new_pane()
        laboratory.start_bridge()
        id = laboratory.idle_session(pane)

        client = laboratory.client()
        client.send_request({"protocolVersion": 1, "requestId": str(uuid.uuid4()).upper(),
                             "client": {"name": "n" * 900_000, "version": "1", "processId": 1},
                             "operation": "terminal_send_command", "arguments": {"sessionId": id, "command": "true"}})
        client.answer()
        client.close()
        size = (laboratory.data / "history.json").stat().st_size
        report.check("a client's name of 900 kB is cut in the history", size < 50_000, f"{size} bytes on the disk")


def pictures(report):
    with Laboratory() as laboratory:
        pane = laboratory.new_pane()
        laboratory.start_bridge()
        id = laboratory.idle_session(pane)
        client = laboratory.client(seconds=60)
        for _ in range(60):
            answer = client.call("terminal_capture_screen", sessionId=id)
        client.close()
        if not answer["ok"]:
            report.check("60 pictures can be taken", False, sentence(answer))
            return
        folder = pathlib.Path(answer["data"]["imagePath"]).parent
        count = len(list(folder.iterdir()))
        report.check("60 pictures taken: the latest are there, at most 50", 0 < count <= 50, f"{count} files")


def endless_line(report):
    with Laboratory() as laboratory:
        laboratory.new_pane()
        laboratory.start_bridge()
        helper = laboratory.helper()
        call = helper.begin("terminal_send_command", sessionId=str(uuid.uuid4()), command="x" * (5 << 20))
        try:
            report.check("a call of more than 4 MiB is refused by its id", bool(helper.answer(call, 5)))
        except (Gone, NoAnswer) as error:
            report.check("a call of more than 4 MiB is refused by its id", False, f"it hangs in the client: {error}")


def run(seconds, report):
    for scene in (titles, characters, long_names, pictures, endless_line):
        scene(report)
