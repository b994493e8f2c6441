"""The two public references for names, numbers of arguments and values of Apple's interfaces.

- @nativescript/macos-node-api: TypeScript declarations of the frameworks of macOS 26, one file a framework. A selector
  stands there without its colons: "insertDescriptor:atIndex:" is insertDescriptorAtIndex with two arguments.
- Free Pascal's cocoaint and univint: exact selectors and values, of an SDK of about macOS 10.10.
"""

import pathlib
import re


class Classes:
    """Members by class: (is static, name, number of arguments), with those of superclasses and protocols."""

    def __init__(self):
        self.members, self.parents = {}, {}

    def add(self, owner, member):
        self.members.setdefault(owner, set()).add(member)

    def inherit(self, owner, parents):
        self.parents.setdefault(owner, set()).update(parents)

    def has(self, owner, member):
        seen, waiting = set(), [owner]
        while waiting:
            name = waiting.pop()
            if name in seen:
                continue
            seen.add(name)
            if member in self.members.get(name, ()):
                return True
            waiting.extend(self.parents.get(name, ()))
        return False


def count_arguments(text):
    """The number of parameters in "a: string, b: (p1: x, p2: y) ~ void"."""
    if not text.strip():
        return 0
    depth = commas = 0
    for character in text:
        depth += character in "(<{["
        depth -= character in ")>}]"
        commas += character == "," and depth == 0
    return commas + 1


def enclosed(text, opening, brackets):
    """What stands between the bracket at `opening` and the one that closes it."""
    depth = 0
    for place in range(opening, len(text)):
        depth += text[place] == brackets[0]
        depth -= text[place] == brackets[1]
        if depth == 0:
            return text[opening + 1 : place]
    return ""


class TypeScript:
    """`frameworks` maps a class, function or constant to the framework that declares it."""

    def __init__(self, folder):
        self.classes, self.functions, self.values, self.frameworks = Classes(), {}, {}, {}
        self.constants = set()
        for path in sorted(pathlib.Path(folder).glob("*.d.ts")):
            self._read(path.name[: -len(".d.ts")], path.read_text(encoding="utf-8"))

    def _read(self, framework, text):
        owner, enum = None, None
        for line in text.replace("=>", "~").split("\n"):
            if match := re.match(r"(?:declare )?(?:class|interface) (\w+)(.*)\{", line):
                owner, enum = match[1], None
                parents = re.findall(r"\w+", match[2].replace("extends", "").replace("implements", ""))
                self.classes.inherit(owner, parents)
                if line.startswith("declare class"):
                    self.frameworks.setdefault(owner, framework)
            elif match := re.match(r"declare const (\w+): \{", line):
                enum, owner = match[1], None
            elif line == "}" or line == "};":
                owner = enum = None
            elif enum and (match := re.match(r"  (\w+): (-?\d+),", line)):
                self.values[enum + match[1]] = self.values[match[1]] = int(match[2])
                # The converter takes off what all names of an enumeration begin with: of the kCGWindowListOptions "kCGWindowList".
                for end in re.finditer(r"(?<=[a-z])(?=[A-Z])", enum):
                    for prefix in (enum[: end.start()], "k" + enum[: end.start()]):
                        self.values.setdefault(prefix + match[1], int(match[2]))
            elif owner and (match := re.match(r"  (static )?(?:readonly )?(\w+)\??(:|\(|<)", line)):
                opening = match.end() - 1
                if match[3] == "<":
                    opening += len(enclosed(line, opening, "<>")) + 2
                arity = 0 if match[3] == ":" else count_arguments_but_this(enclosed(line, opening, "()"))
                self.classes.add(owner, (bool(match[1]), match[2], arity))
            elif match := re.match(r"declare function (\w+)\(", line):
                self.functions[match[1]] = count_arguments(enclosed(line, match.end() - 1, "()"))
                self.frameworks.setdefault(match[1], framework)
            elif match := re.match(r"declare const (\w+):", line):
                self.constants.add(match[1])
                self.frameworks.setdefault(match[1], framework)

    @staticmethod
    def member_name(selector):
        first, *rest = selector.rstrip(":").split(":")
        return first + "".join(part[:1].upper() + part[1:] for part in rest)


def count_arguments_but_this(text):
    return count_arguments(re.sub(r"^this: This(, )?", "", text))


class Pascal:
    def __init__(self, packages):
        packages = pathlib.Path(packages)
        self.classes, self.values, self.functions = Classes(), {}, set()
        for path in sorted(packages.glob("cocoaint/src/*/*.inc")):
            self._read_classes(path.read_text(encoding="latin-1"))
        for path in sorted(packages.glob("univint/src/*.pas")):
            text = path.read_text(encoding="latin-1")
            self._read_values(text)
            self.functions.update(re.findall(r"external name '_(\w+)'", text))

    def _read_classes(self, text):
        owner = None
        for line in text.split("\n"):
            if match := re.match(r"\s*(\w+) = (?:objcclass|objcprotocol) external(?: name '\w+')?(?: \((.*?)\))?", line):
                owner = match[1]
                self.classes.inherit(owner, re.findall(r"\w+", match[2] or ""))
            elif match := re.match(r"\s*\w+ = objccategory external(?: name '\w+')? \((\w+)\)", line):
                owner = match[1]
            elif owner and (match := re.search(r"message '([\w:]+)'", line)):
                selector = match[1].replace("ObjCBOOL", "boolean")  # a slip of its converter's
                self.classes.add(owner, (line.strip().startswith("class "), selector, selector.count(":")))
        self._read_values(text)

    def _read_values(self, text):
        for name, value in re.findall(r"^\s*(\w+) = (-?\d+|\d+ shl \d+|CGWindowID\(0\)|\$[0-9A-Fa-f]+|FourCharCode\('.{4}'\))\s*;", text, re.M):
            if value.startswith("FourCharCode"):
                number = int.from_bytes(value[14:18].encode("latin-1"), "big")
            elif "shl" in value:
                number = int(value.split()[0]) << int(value.split()[2])
            elif value.startswith("CGWindowID"):
                number = 0
            else:
                number = int(value[1:], 16) if value[0] == "$" else int(value)
            self.values.setdefault(name, number)
