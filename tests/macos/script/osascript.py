"""Stands in for macOS's osascript: runs a script on a desktop that is kept in a file between two calls.

    osascript.py DESKTOP SCRIPT
"""

import pathlib
import pickle
import sys

import interpreter
from values import ScriptError, source_form


def main(kept, script):
    desktop = pickle.loads(kept.read_bytes())
    try:
        print(source_form(interpreter.load(script.read_text(encoding="utf-8"), desktop).call("run")))
    except ScriptError as error:
        print(f"{script}:12:34: execution error: {error.text} ({error.number})", file=sys.stderr)
        return 1
    finally:
        kept.write_bytes(pickle.dumps(desktop))
    return 0


if __name__ == "__main__":
    sys.exit(main(*map(pathlib.Path, sys.argv[1:])))
