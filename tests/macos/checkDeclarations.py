#!/usr/bin/env python3
"""Checks the declarations in tests/macos/declarations, and the constants in the macOS files that are written as numbers,
against two public references (references.py).

    checkDeclarations.py TYPESCRIPT_FOLDER PASCAL_PACKAGES DECLARATIONS SOURCE...

Every class, method, function and constant must stand in both references with the same number of arguments, every value
must be the same; what is younger than one reference, or stands in none, is named below. Not checked: types, ownership,
versions. Prints what is wrong and ends with status 1 when there is something; else the number of things compared.
"""

import pathlib
import re
import sys

from references import Pascal, TypeScript

# Younger than Free Pascal's SDK, or left out by its converter.
NOT_IN_PASCAL = {
    "SMAppService": "macOS 13",
    "SMAppServiceStatusNotRegistered": "macOS 13",
    "SMAppServiceStatusEnabled": "macOS 13",
    "SMAppServiceStatusRequiresApproval": "macOS 13",
    "SMAppServiceStatusNotFound": "macOS 13",
    "AXIsProcessTrustedWithOptions": "macOS 10.9",
    "kAXTrustedCheckOptionPrompt": "macOS 10.9",
    "CGRequestScreenCaptureAccess": "macOS 11",
    "descriptorWithBundleIdentifier:": "macOS 10.11",
    "NSWorkspaceOpenConfiguration": "macOS 10.15",
    "openApplicationAtURL:configuration:completionHandler:": "macOS 10.15",
}
# In no reference: Sparkle is not Apple's.
IN_NO_REFERENCE = {"SPUUpdater", "SPUStandardUpdaterController"}


class Declarations:
    """What the headers declare: methods as (class, is static, selector), functions, constants, values."""

    def __init__(self, folder):
        self.classes, self.methods, self.functions = {}, [], {}
        self.constants, self.values = set(), {}
        self.frameworks = {}
        for path in sorted(pathlib.Path(folder).rglob("*.h")):
            self._read(re.sub(r"//[^\n]*|^#[^\n]*", "", path.read_text(encoding="utf-8"), flags=re.M), path.parent.name)

    def _read(self, text, framework):
        for kind, name, body in re.findall(r"@(interface|protocol)\s+(\w+)(.*?)@end", text, re.S):
            if kind == "interface":
                self.classes[name] = framework
            for sign, rest in re.findall(r"^([-+])\s*\((?:[^()]|\([^()]*\))*\)\s*([^;]*);", body, re.M | re.S):
                rest = re.sub(r"\((?:[^()]|\([^()]*\))*\)", "", rest)
                parts = re.findall(r"(\w+:)", rest)
                self.methods.append((name, sign == "+", "".join(parts) or rest.strip()))
        outside = re.sub(r"@(interface|protocol).*?@end", "", text, flags=re.S)
        for block in re.findall(r"enum\s*\{(.*?)\}|NS_ENUM\([^)]*\)\s*\{(.*?)\}", outside, re.S):
            for name, value in re.findall(r"(\w+)\s*=\s*(-?\d+)", "".join(block)):
                self.values[name] = int(value)
        for name in re.findall(r"(?:extern|VELMORA_EXTERN_C)\s+[\w\s*]+?\b(\w+)(?:\s+API_AVAILABLE\([^;]*\))?;", outside):
            self.constants.add(name)
            self.frameworks[name] = framework
        for name, arguments in re.findall(r"^(?!typedef)(?:VELMORA_EXTERN_C\s+)?\w+\s+\*?(\w+)\(([^()]*)\)", outside, re.M):
            self.frameworks[name] = framework
            self.functions[name] = 0 if arguments.strip() in ("", "void") else arguments.count(",") + 1


def literal_constants(text):
    """Constants written as numbers in a source, with the name that a comment gives: `= 'ascr';  // kName`."""
    for literal, name in re.findall(r"=\s*('.{4}'|-?\d+);\s*//\s*((?:k|key|err)[A-Z]\w+)", text):
        number = int.from_bytes(literal[1:5].encode(), "big") if literal[0] == "'" else int(literal)
        yield name, number


def check(declarations, sources, typescript, pascal):
    """(findings, number of things compared)"""
    findings, compared = [], 0

    def expect(condition, sentence):
        nonlocal compared
        compared += 1
        if not condition:
            findings.append(sentence)

    for name in declarations.classes:
        if name in IN_NO_REFERENCE:
            continue
        expect(name in typescript.frameworks, f"{name}: no such class in the TypeScript reference")
        if name not in NOT_IN_PASCAL:
            expect(name in pascal.classes.members or name in pascal.classes.parents, f"{name}: no such class in the Pascal reference")
    for owner, static, selector in declarations.methods:
        if owner in IN_NO_REFERENCE:
            continue
        shown = f"{'+' if static else '-'}[{owner} {selector}]"
        arity = selector.count(":")
        member = (static, typescript.member_name(selector), arity)
        expect(typescript.classes.has(owner, member), f"{shown}: not in the TypeScript reference")
        if owner not in NOT_IN_PASCAL and selector not in NOT_IN_PASCAL:
            names = {owner, owner + "Protocol"}
            found = any(pascal.classes.has(name, (static, selector, arity)) for name in names)
            expect(found, f"{shown}: not in the Pascal reference")
    for name, arity in declarations.functions.items():
        expect(typescript.functions.get(name) == arity, f"{name}: takes {typescript.functions.get(name)} arguments, not {arity}")
    for name in declarations.constants:
        expect(name in typescript.constants, f"{name}: no such constant in the TypeScript reference")
    literals = [pair for source in sources for pair in literal_constants(source)]
    for name, value in [*declarations.values.items(), *literals]:
        known = [reference.values[name] for reference in (typescript, pascal) if name in reference.values]
        expect(known, f"{name}: its value stands in no reference")
        expect(all(other == value for other in known), f"{name}: is {known}, not {value}")
    return findings, compared


def main():
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    sources = [pathlib.Path(path).read_text(encoding="utf-8") for path in sys.argv[4:]]
    findings, compared = check(Declarations(sys.argv[3]), sources, TypeScript(sys.argv[1]), Pascal(sys.argv[2]))
    for finding in findings:
        print(finding)
    if findings or compared == 0:
        sys.exit(1)
    print(f"{compared} comparisons with the references, all equal")


if __name__ == "__main__":
    main()
