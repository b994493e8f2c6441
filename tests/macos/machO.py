"""Reads what the macOS check asks of Mach-O files (64 bit, little-endian): symbols, libraries, the target."""

import struct

CPU_NAMES = {0x0100000C: "arm64", 0x01000007: "x86_64"}
LC_SYMTAB, LC_LOAD_DYLIB, LC_BUILD_VERSION = 0x2, 0xC, 0x32
N_STAB, N_TYPE, N_EXT, N_UNDF = 0xE0, 0x0E, 0x01, 0x0


class MachO:
    def __init__(self, data):
        magic, cpu, _, self.filetype, commands = struct.unpack_from("<IIIII", data)
        if magic != 0xFEEDFACF:
            raise ValueError("not a 64-bit Mach-O file")
        self.cpu = CPU_NAMES[cpu]
        self.libraries, self.minimum_system = [], None
        self.defined, self.undefined = set(), set()
        place = 32
        for _ in range(commands):
            command, size = struct.unpack_from("<II", data, place)
            if command == LC_SYMTAB:
                self._read_symbols(data, *struct.unpack_from("<IIII", data, place + 8))
            elif command == LC_LOAD_DYLIB:
                (name,) = struct.unpack_from("<I", data, place + 8)
                self.libraries.append(data[place + name : place + size].split(b"\0")[0].decode())
            elif command == LC_BUILD_VERSION:
                (version,) = struct.unpack_from("<I", data, place + 12)
                self.minimum_system = f"{version >> 16}.{version >> 8 & 255}"
            place += size

    def _read_symbols(self, data, symbols, count, strings, _):
        for index in range(count):
            name, kind, _, _, value = struct.unpack_from("<IBBHQ", data, symbols + 16 * index)
            if kind & N_STAB or not kind & N_EXT:
                continue
            text = data[strings + name : data.index(b"\0", strings + name)].decode()
            # An undefined symbol with a value is a common one: a definition.
            (self.undefined if kind & N_TYPE == N_UNDF and value == 0 else self.defined).add(text)


def members(data):
    """The object files of an archive, or the file itself."""
    if not data.startswith(b"!<arch>\n"):
        yield data
        return
    place = 8
    while place < len(data):
        name, size = data[place : place + 16], int(data[place + 48 : place + 58])
        content = data[place + 60 : place + 60 + size]
        if name.startswith(b"#1/"):  # the name stands before the content
            content = content[int(name[3:]) :]
        if content[:4] == b"\xcf\xfa\xed\xfe":
            yield content
        place += 60 + size + size % 2


def read(path):
    with open(path, "rb") as file:
        return [MachO(member) for member in members(file.read())]
