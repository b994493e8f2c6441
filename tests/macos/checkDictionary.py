"""Compares the words of TerminalBridge.applescript with dictionaries: every property that it asks for stands in its
class, every command has its parameters, and no name of ours is a word of the applications or of AppleScript.

    checkDictionary.py DECLARATIONS

DECLARATIONS is the folder src/core of @jxa/types, which was made from the applications' own dictionaries. It does not
know which properties can be set, nor which class holds which; and it is some years older than macOS 26.
"""

import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent / "script"))
import dictionary  # noqa: E402  (the path comes first)
import syntax  # noqa: E402
from scriptTesting import CONTRACT, SCRIPT  # noqa: E402

FILES = {dictionary.TERMINAL: "Terminal", dictionary.SYSTEM_EVENTS: "SystemEvents"}
ADDITIONS = "StandardAdditions"

# AppleScript's own words (Language Guide: reserved words, constants, classes and properties of values), of which a
# name of ours could be one.
RESERVED = set("""
about above after against and apart application around as aside at back before beginning behind below beneath beside
between but by character characters class considering constant contain contains contents continue copy count data date
day div does each eighth else end equal equals error every event exit false fifth file first for fourth from front
frontmost get given global handler hours id idle if ignoring in instead integer into is it item items its last launch
length linefeed list local me middle minutes missing mod month my name ninth not number of on onto open or out over
paragraph paragraphs pi point print prop property put quit quote real record ref reference reopen repeat rest result
return returning reverse run running script second seconds set seventh since sixth some space string tab tell tenth text
that the then third through thru time timeout times to transaction true try until value version weekday weeks where
while whose with without word words year activate log start stop anything
""".split())


def spaced(name):
    """numberOfRows is "number of rows" there, UIElementsEnabled "ui elements enabled"."""
    return re.sub(r"(?<=[a-z0-9])(?=[A-Z])|(?<=[A-Z])(?=[A-Z][a-z])", " ", name).lower()


class Words:
    """The words of one application: properties by class, and parameters by command."""

    def __init__(self, text):
        self.classes, self.commands = {}, {}
        parameters = {}
        for name, body in re.findall(r"export interface (\w+) \{(.*?)\n *\}", text, re.S):
            if name.endswith("OptionalParameter"):
                found = re.findall(r"^ +(\w+)\?:", body, re.M)
                parameters[spaced(name.removesuffix("OptionalParameter"))] = set(map(spaced, found))
            else:
                found = re.findall(r"^ +(\w+)\(\):", body, re.M)
                self.classes.setdefault(spaced(name), set()).update(map(spaced, found))
        for name in re.findall(r"^     (\w+)\([^)]", text, re.M):
            self.commands[spaced(name)] = parameters.get(spaced(name), set())

    def terms(self):
        """Every word: classes, also in the plural, properties, commands and parameters."""
        words = {*self.classes, *(f"{name}s" for name in self.classes), *self.commands}
        return words.union(*self.classes.values(), *self.commands.values())


def references(folder):
    files = [*FILES.values(), ADDITIONS]
    return {name: Words((pathlib.Path(folder) / f"{name}.d.ts").read_text(encoding="utf-8")) for name in files}


def nodes(part):
    """A part of the tree and all within."""
    if isinstance(part, syntax.Node):
        yield part
        part = part.data
    if isinstance(part, tuple):
        for inner in part:
            yield from nodes(inner)


def asked(handlers):
    """Properties that the script reads or sets: (application, classes that may be meant, property)."""
    for handler in handlers.values():
        for node in nodes(handler.body):
            if node.kind in ("get", "put"):
                application, name, owner = node.data[:3]
                kinds = {"every window": {"window"}, "the application": {"application"}, "variable": {"window", "tab"}}
                yield application, kinds.get(owner.kind, {owner.kind}), name


def names(handlers):
    """What we have named: handlers, parameters and variables, in lower case; with the line of the handler."""
    for handler in handlers.values():
        own = {handler.name.lower(), *handler.parameters}
        for node in nodes(handler.body):
            if node.kind in ("set", "repeat from"):
                own.add(node.data[0])
            elif node.kind == "set names":
                own.update(node.data[0])
            elif node.kind == "try":
                own.update(node.data[1])
        for name in own:
            yield handler.line, name


def check_words(handlers, references, known=dictionary):
    for application, kinds, name in asked(handlers):
        words = references[FILES[application]]
        if not any(name.lower() in words.classes.get(kind, ()) for kind in kinds):
            yield f"{FILES[application]}: no {' or '.join(sorted(kinds))} has '{name}'"
    for application, kinds in known.PROPERTIES.items():
        for kind, properties in kinds.items():
            for name in properties:
                if name.lower() not in references[FILES[application]].classes.get(kind, ()):
                    yield f"{FILES[application]}: no {kind} has '{name}'"
    for application, commands in known.COMMANDS.items():
        words = references[FILES[application]]
        for name, parameters in commands.items():
            if name not in words.commands:
                yield f"{FILES[application]}: no command '{name}'"
            for parameter in parameters:
                if parameter not in words.commands.get(name, ()):
                    yield f"{FILES[application]}: '{name}' has no parameter '{parameter}'"
    if "delay" not in references[ADDITIONS].commands:
        yield f"{ADDITIONS}: no command 'delay'"


def check_names(handlers, references):
    terms = {word: name for name, words in references.items() for word in words.terms()}
    for line, name in names(handlers):
        if name in RESERVED:
            yield f"line {line}: '{name}' is a word of AppleScript"
        elif name in terms:
            yield f"line {line}: '{name}' is a word of {terms[name]}"


def check(source, references, known=dictionary):
    """All findings, and how many words and names were compared."""
    handlers = syntax.read(source)
    findings = sorted({*check_words(handlers, references, known), *check_names(handlers, references)})
    own = {name for _, name in names(handlers)}
    terms = set().union(*(words.terms() for words in references.values()))
    return findings, len(own), len(terms)


def main(folder):
    known = references(folder)
    failed = False
    for path in (SCRIPT, CONTRACT / "Scenarios.applescript"):
        findings, own, terms = check(path.read_text(encoding="utf-8"), known)
        print(f"{path.name}: {own} names compared with {terms} words")
        for finding in findings:
            print(f"{path.name}: {finding}")
        failed = failed or bool(findings)
    return failed


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
