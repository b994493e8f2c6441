#!/usr/bin/env python3
"""Checks what was linked: checkPrograms.py CPU MINIMUM_SYSTEM PROGRAM...

Each program is for that processor and that macOS, and loads only libraries that a Mac has: its own, Homebrew's, or Sparkle.
"""

import sys

import machO


def main():
    cpu, minimum, *programs = sys.argv[1:]
    for path in programs:
        (program,) = machO.read(path)
        found = (program.cpu, program.minimum_system)
        if found != (cpu, minimum):
            sys.exit(f"{path}: is for {found}, not for {(cpu, minimum)}")
        strange = [name for name in program.libraries if not name.startswith(("/System/", "/usr/lib/", "/opt/homebrew/", "@rpath/Sparkle"))]
        if strange or "/usr/lib/libSystem.B.dylib" not in program.libraries:
            sys.exit(f"{path}: loads {program.libraries}")
        print(f"{path}: {cpu}, macOS {minimum}, {len(program.libraries)} libraries")
    if not programs:
        sys.exit("no program was given")


if __name__ == "__main__":
    main()
