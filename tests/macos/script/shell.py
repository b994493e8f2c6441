"""A shell in a tab, as far as the scenarios type into it: a few commands that every shell has, over time."""

PROMPT = "$ "
ROWS = 24
COMPLETED = "[Process completed]"
# A login shell, and what reads as one to Terminal.
SHELLS = {"login", "sh", "bash", "zsh", "ksh", "csh", "tcsh", "dash", "fish"}

RETURN_KEY, UP_KEY = 36, 126


class Shell:
    """Programs and text of a tab. `programs_at_start` are (age in seconds, programs, what Terminal then calls busy)."""

    def __init__(self, born, programs_at_start=((0, ["login"], False), (0.5, ["login", "-zsh"], False))):
        self.born, self.at_start = born, programs_at_start
        self.lines = [PROMPT]
        self.inner = []  # Shells inside the first one.
        self.running = None  # (program, when it ends)
        self.last_command = ""
        self.ended = False

    def programs(self, now):
        if self.ended:
            return []
        start = [programs for age, programs, _ in self.at_start if now - self.born >= age]
        settled = start[-1] if start else []
        return settled + self.inner + ([self.running[0]] if self.runs(now) else [])

    def busy(self, now):
        """Terminal counts programs beyond the login shell, and no shells (MonoDevelop's MacExternalConsoleProcess:
        "bash doesn't count for this")."""
        start = [busy for age, _, busy in self.at_start if now - self.born >= age]
        return bool(start and start[-1]) or self.runs(now)

    def runs(self, now):
        return self.running is not None and now < self.running[1]

    def submit(self, line, now):
        """Types a line and Return."""
        self.lines[-1] += line
        self.last_command = line
        words = line.split()
        if words[:1] == ["echo"]:
            self.lines.append(" ".join(words[1:]))
        elif words[:1] == ["seq"]:
            self.lines.extend(str(number) for number in range(1, int(words[1]) + 1))
        elif words[:1] == ["sleep"]:
            self.running = ("sleep", now + float(words[1]))
        elif words == ["sh"]:
            self.inner.append("sh")
        elif words == ["exit"] and self.inner:
            self.inner.pop()
        elif words == ["exit"]:
            self.ended = True
            self.lines.extend(["", COMPLETED])
            return
        elif words:
            raise AssertionError(f"this shell does not know: {line}")
        self.lines.append(PROMPT)

    def press(self, key, now):
        if key == UP_KEY:
            self.lines[-1] += self.last_command
        elif key == RETURN_KEY:
            line = self.lines[-1].removeprefix(PROMPT)
            self.lines[-1] = PROMPT
            self.submit(line, now)

    def history(self):
        return "\n".join(self.lines) + "\n"

    def contents(self):
        """The rows below the last line are empty lines of the text (people test whether it starts with one)."""
        shown = self.lines[-ROWS:]
        return "\n".join(shown) + "\n" * (ROWS - len(shown) + 1)
