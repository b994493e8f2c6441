"""What a scenario found out, a line each."""


class Report:
    def __init__(self):
        self.passed = 0
        self.failed = 0

    def check(self, claim, holds, seen=""):
        """`seen`: the figures behind a claim that holds, or what was seen instead."""
        seen = " ".join(str(seen).split())
        if holds:
            self.passed += 1
            print(f"OK    {claim}" + (f" ({seen})" if seen else ""), flush=True)
        else:
            self.failed += 1
            print(f"MISS  {claim}: {seen}", flush=True)

    def note(self, text):
        """What could not be looked at here, and why; it counts as neither."""
        print(f"NOTE  {text}", flush=True)
