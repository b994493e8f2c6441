#!/usr/bin/env python3
"""Checks that the documents are true: every relative link leads somewhere, and every block of commands that is marked runs.

    check-docs.py links        the links of every *.md; prints only what is wrong
    check-docs.py run FOLDER   the blocks as well, with the programs in FOLDER; the last line counts

A block is marked by a comment in the line before it:

    <!-- run -->               in a home of its own, without a bridge
    <!-- run: bridge -->       with velmora-headless and a tmux server of its own
    <!-- run: exit 1 -->       the last command ends so

In a `console` block the lines after "$ " are run, and the others must come in the output, in their order; "..." in them
stands for anything. In a `sh` block every line is run.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

FENCE = re.compile(r"^(?P<mark>```|~~~)(?P<language>\w*)\s*$")
MARK = re.compile(r"^<!-- run(?:: (?P<how>[a-z0-9 ]+))? -->$")
LINK = re.compile(r"!?\[[^\]]*\]\(<?([^)\s>]+)>?(?:\s+\"[^\"]*\")?\)")
SECONDS = 60


def prose_of(text):
    """The lines with those of code blocks left empty, so that the numbers stay."""
    lines, fence = [], None
    for line in text.split("\n"):
        found = FENCE.match(line.strip()) if fence is None else None
        if fence is None and found:
            fence = found["mark"]
            lines.append("")
        elif fence is not None:
            if line.strip() == fence:
                fence = None
            lines.append("")
        else:
            lines.append(line)
    return lines


def anchors_of(text):
    """The anchors of a document's headings, as the usual viewers make them."""
    anchors, seen = set(), {}
    for line in prose_of(text):
        heading = re.match(r"^#{1,6}\s+(.*?)\s*#*$", line)
        if not heading:
            continue
        words = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading[1]).lower()
        slug = re.sub(r"[^\w\- ]", "", words).replace(" ", "-")
        count = seen.get(slug, 0)
        seen[slug] = count + 1
        anchors.add(slug if count == 0 else f"{slug}-{count}")
    return anchors


def dead_links(root, files):
    problems = []
    for file in files:
        for number, line in enumerate(prose_of((root / file).read_text()), 1):
            for target in LINK.findall(re.sub(r"`[^`]*`", "", line)):
                if re.match(r"[a-z][a-z0-9+.-]*:", target):
                    continue
                path, _, anchor = target.partition("#")
                place = (root / file).parent / path if path else root / file
                if not place.exists():
                    problems.append(f"{file}:{number}: {target} leads nowhere")
                elif anchor and anchor not in anchors_of(place.read_text()):
                    problems.append(f"{file}:{number}: {target} names no heading there")
    return problems


def blocks_of(file, text):
    """The marked blocks: (where, what the mark says, language, lines)."""
    lines, found = text.split("\n"), []
    for index, line in enumerate(lines):
        mark = MARK.match(line.strip())
        if not mark:
            continue
        fence = FENCE.match(lines[index + 1].strip()) if index + 1 < len(lines) else None
        if fence is None or fence["language"] not in ("sh", "console"):
            raise SystemExit(f"{file}:{index + 1}: no block of commands follows the mark")
        end = index + 2
        while lines[end].strip() != fence["mark"]:
            end += 1
        found.append((f"{file}:{index + 2}", mark["how"] or "", fence["language"], lines[index + 2:end]))
    return found


class Surroundings:
    """A home, and when it is asked for a bridge and a tmux server, which end with it."""

    def __init__(self, programs, with_bridge):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="velmora-docs-"))
        kept = {name: os.environ[name] for name in ("LANG",) if name in os.environ}
        self.environment = kept | {
            "HOME": str(self.folder), "SHELL": "/bin/bash", "TERM": "xterm-256color", "USER": "reader",
            "PATH": f"{programs}:/usr/bin:/bin", "XDG_RUNTIME_DIR": str(self.folder), "TMUX_TMPDIR": str(self.folder),
        }
        self.bridge = None
        if with_bridge:
            self.tmux("-f", "/dev/null", "new-session", "-d", "-s", "work", "-x", "100", "-y", "30")
            self.bridge = subprocess.Popen([f"{programs}/velmora-headless"], env=self.environment,
                                           stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
            self.bridge.stdout.readline()

    def tmux(self, *arguments):
        return subprocess.run(["tmux", *arguments], env=self.environment, capture_output=True, check=False)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.bridge:
            self.bridge.terminate()
            self.bridge.wait(SECONDS)
            self.tmux("kill-server")
        shutil.rmtree(self.folder, ignore_errors=True)


def missing_line(expected, output):
    """The first expected line that does not come, in its order; nothing when all do."""
    lines = iter(output.split("\n"))
    for line in expected:
        pattern = re.compile(".*".join(re.escape(part) for part in line.strip().split("...")))
        if not any(pattern.fullmatch(found.strip()) for found in lines):
            return line
    return None


def problem_of(block, programs):
    _, how, language, lines = block
    is_console = language == "console"
    commands = [line[2:] for line in lines if line.startswith("$ ")] if is_console else lines
    expected = [line for line in lines if line.strip() and not line.startswith("$ ")] if is_console else []
    wanted = int(how.split()[-1]) if "exit" in how else 0
    with Surroundings(programs, "bridge" in how) as surroundings:
        script = "\n".join(commands) + "\n"
        shell = ["bash", "-c", script] if wanted else ["bash", "-e", "-c", script]
        try:
            done = subprocess.run(shell, env=surroundings.environment, cwd=surroundings.folder, text=True, timeout=SECONDS,
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        except subprocess.TimeoutExpired:
            return f"takes more than {SECONDS} seconds"
        output = done.stdout.replace(str(surroundings.folder), "/home/me")
    if done.returncode != wanted:
        return f"ends with {done.returncode}:\n{output}"
    line = missing_line(expected, output)
    return None if line is None else f"does not print this: {line}\nbut this:\n{output}"


def main(arguments):
    if arguments[:1] not in (["links"], ["run"]) or (arguments[0] == "run") != (len(arguments) == 2):
        raise SystemExit(__doc__)
    root = pathlib.Path(__file__).resolve().parent.parent
    files = subprocess.run(["git", "ls-files", "*.md"], cwd=root, capture_output=True, text=True, check=True).stdout.split()
    problems = dead_links(root, files)
    for problem in problems:
        print(problem)
    if arguments[0] == "links":
        return 1 if problems else 0
    programs = pathlib.Path(arguments[1]).resolve()
    if not (programs / "velmora").exists():
        raise SystemExit(f"there is no velmora in {programs}")
    failed = len(problems)
    blocks = [block for file in files for block in blocks_of(file, (root / file).read_text())]
    for block in blocks:
        problem = problem_of(block, programs)
        print(f"OK    {block[0]}" if problem is None else f"FAIL  {block[0]} {problem}", flush=True)
        failed += problem is not None
    links_passed = 0 if problems else 1
    print(f"{len(blocks) - (failed - len(problems)) + links_passed} passed, {failed} failed")
    return 1 if failed or not blocks else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
