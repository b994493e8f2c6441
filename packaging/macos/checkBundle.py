#!/usr/bin/env python3
"""Whether a bundle runs on another Mac than the one that built it: checkBundle.py Velmora.app

Reads the load commands of every program and library in it. Each library that one of them loads must be the system's, or lie
in the bundle where the loader looks for it; no path that is searched may lead out of the bundle. Prints what is wrong and ends
with status 1 when there is something; else the number of files.
"""

import pathlib
import struct
import sys

FAT, FAT_64, MACH_O_64 = 0xCAFEBABE, 0xCAFEBABF, 0xFEEDFACF
MH_EXECUTE = 2
# LC_LOAD_DYLIB, LC_LOAD_WEAK_DYLIB, LC_REEXPORT_DYLIB, LC_LOAD_UPWARD_DYLIB, LC_RPATH (mach-o/loader.h)
LOADS = {0xC, 0x80000018, 0x8000001F, 0x80000023}
RPATH = 0x8000001C
SYSTEM = ("/usr/lib/", "/System/")


class Image:
    """One processor's part of a file."""

    def __init__(self, data):
        _, _, _, self.kind, commands = struct.unpack_from("<IIIII", data)
        self.loads, self.searched = [], []
        place = 32
        for _ in range(commands):
            command, size, name = struct.unpack_from("<III", data, place)
            if command in LOADS or command == RPATH:
                text = data[place + name : place + size].split(b"\0")[0].decode()
                (self.searched if command == RPATH else self.loads).append(text)
            place += size


def images(data):
    """The parts of a Mach-O file; none for any other file."""
    if len(data) < 32:
        return
    (magic,) = struct.unpack_from("<I", data)
    if magic == MACH_O_64:
        yield Image(data)
    (magic, count) = struct.unpack_from(">II", data)
    if magic in (FAT, FAT_64):
        for number in range(count):
            form = ">II" if magic == FAT else ">QQ"
            step = 20 if magic == FAT else 32
            place, size = struct.unpack_from(form, data, 8 + number * step + 8)
            yield Image(data[place : place + size])


def check(bundle):
    """(what is wrong, the number of files)"""
    contents = bundle.resolve() / "Contents"
    found = {path: list(images(path.read_bytes())) for path in sorted(contents.rglob("*")) if path.is_file() and not path.is_symlink()}
    found = {path: parts for path, parts in found.items() if parts}
    wrong = []
    # A library also searches where the program that loads it does.
    programs = [path for path, parts in found.items() if parts[0].kind == MH_EXECUTE]
    shared = [(program, place) for program in programs for part in found[program] for place in part.searched]

    def expanded(text, path, program):
        return text.replace("@loader_path", str(path.parent)).replace("@executable_path", str(program.parent))

    def candidates(name, path, part):
        for program in [path] if path in programs else programs:
            if not name.startswith("@rpath/"):
                yield expanded(name, path, program)
                continue
            own = [(path, place) for place in part.searched]
            for holder, place in own + [pair for pair in shared if pair[0] == program]:
                yield expanded(place, holder, program) + name.removeprefix("@rpath")

    for path, parts in found.items():
        shown = path.relative_to(bundle.resolve())
        for part in parts:
            for name in part.loads:
                if name.startswith(SYSTEM):
                    continue
                places = [pathlib.Path(place).resolve() for place in candidates(name, path, part)]
                if not any(place.is_relative_to(contents) and place.is_file() for place in places):
                    wrong.append(f"{shown} loads {name}, which is not in the bundle")
            for place in part.searched:
                if not place.startswith(("@", *SYSTEM)):
                    wrong.append(f"{shown} searches {place}")
    return wrong, len(found)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    wrong, count = check(pathlib.Path(sys.argv[1]))
    for line in sorted(set(wrong)):
        print(line)
    if wrong or count == 0:
        sys.exit(1)
    print(f"{count} files load nothing from outside of the bundle")


if __name__ == "__main__":
    main()
