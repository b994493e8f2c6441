#!/usr/bin/env python3
"""Checks TerminalBridge.applescript as far as it can be checked without a Mac.

    checkAppleScript.py SCRIPT HANDLER_TABLE

Form: strings, brackets, comments and continuation lines are closed, every block ends with its own name. Contract: the
script has each handler of the table (ScriptHandlers.h) with its number of arguments, and calls its own handlers as they
are defined. Habits: see `check_habits`. It cannot know whether Terminal understands the words: only compiling the
script on a Mac shows that. Prints what is wrong, a line each, and ends with status 1 when there is something.
"""

import re
import sys

# Words of Terminal's and System Events' dictionaries and of AppleScript itself that must not name anything of ours.
TAKEN = set("""
activate application bold bounds busy class close code contents count custom date delay desktop disk error every exists
file first folder font frame frontmost get history id index item items key keystroke last launch length list menu
miniaturized name number open origin paragraph paragraphs path position print process processes quit record reference
resizable result return role row run save saving script second selected settings size source tab tabs text title tty
value version visible window windows word year zoomed
""".split())

TARGETS = {'"com.apple.Terminal"', '"com.apple.systemevents"'}
END_NAMES = {"if": "if", "repeat": "repeat", "try": "try", "tell": "tell", "timeout": "timeout"}
TOKEN = re.compile(r'"(?:\\.|[^"\\\n])*"|[A-Za-z_][A-Za-z0-9_]*|\d+(?:\.\d+)?|[(){},]|[^\s\w"]+?')


class Line:
    """One logical line: its tokens, and the number of its first physical line."""

    def __init__(self, number, tokens, comment_above=False):
        self.number = number
        self.tokens = tokens
        self.words = [token.lower() if not token.startswith('"') else token for token in tokens]
        self.comment_above = comment_above

    def starts(self, *words):
        return tuple(self.words[: len(words)]) == words

    def has(self, *words):
        """Whether these tokens stand one after another."""
        return any(tuple(self.words[i : i + len(words)]) == words for i in range(len(self.words)))


class Block:
    def __init__(self, kind, line, name=None, parameters=()):
        self.kind, self.line, self.name, self.parameters = kind, line, name, parameters
        self.children = []  # Lines and Blocks, in order
        self.clauses = []  # the "else" and "on error" lines among them

    def lines(self):
        """All lines within, those of inner blocks too."""
        for child in self.children:
            if isinstance(child, Block):
                yield child.line
                yield from child.lines()
            else:
                yield child

    def blocks(self):
        for child in self.children:
            if isinstance(child, Block):
                yield child
                yield from child.blocks()


def without_comments(source, findings):
    """The source with comments blanked out, and the numbers of the lines that are comments only."""
    result, place, line, depth = [], 0, 1, 0
    comment_lines = set()
    while place < len(source):
        two = source[place : place + 2]
        if two == "(*":
            depth += 1
            place += 2
        elif two == "*)" and depth:
            depth -= 1
            place += 2
        elif depth:
            if source[place] == "\n":
                result.append("\n")
                line += 1
            place += 1
        elif two == "--" or source[place] == "#":
            if not source[source.rfind("\n", 0, place) + 1 : place].strip():
                comment_lines.add(line)
            end = source.find("\n", place)
            place = len(source) if end < 0 else end
        elif source[place] == '"':
            match = re.compile(r'"(?:\\.|[^"\\\n])*"').match(source, place)
            if not match:
                findings.append((line, "a text is not closed"))
                end = source.find("\n", place)
                place = len(source) if end < 0 else end
            else:
                result.append(match.group())
                place = match.end()
        else:
            if source[place] == "\n":
                line += 1
            result.append(source[place])
            place += 1
    if depth:
        findings.append((line, "a comment (* is not closed"))
    return "".join(result), comment_lines


def logical_lines(source, findings):
    """Joins continued lines; checks brackets line by line."""
    text, comments = without_comments(source, findings)
    lines, pending, first = [], "", 0
    for number, physical in enumerate(text.split("\n"), start=1):
        if not pending:
            first = number
        elif not physical.strip():
            findings.append((number, "a continued line ends in nothing"))
        stripped = physical.rstrip()
        if "¬" in stripped[:-1]:
            findings.append((number, "text follows the continuation sign"))
        if stripped.endswith("¬"):
            pending += stripped[:-1] + " "
            continue
        tokens = TOKEN.findall(pending + physical)
        pending = ""
        check_brackets(first, tokens, findings)
        if tokens:
            lines.append(Line(first, tokens, comment_above=first - 1 in comments))
    if pending:
        findings.append((first, "the last line is continued"))
    return lines


def check_brackets(number, tokens, findings):
    open_brackets = []
    for token in tokens:
        if token in "({" and len(token) == 1:
            open_brackets.append(token)
        elif token in (")", "}"):
            if not open_brackets or open_brackets.pop() + token not in ("()", "{}"):
                findings.append((number, f"'{token}' closes nothing"))
                return
    if open_brackets:
        findings.append((number, f"'{open_brackets[-1]}' is not closed"))


def opened_block(line):
    """The block that a line opens, or None."""
    words = line.words
    if words[0] in ("on", "to") and not line.starts("on", "error"):
        parameters = [t for t in line.tokens[3:-1] if t != ","]
        return Block("handler", line, line.tokens[1] if len(line.tokens) > 1 else "", parameters)
    if words[0] == "if" and words[-1] == "then":
        return Block("if", line)
    if words[0] == "repeat":
        return Block("repeat", line)
    if words == ["try"]:
        return Block("try", line)
    if words[0] == "tell" and "to" not in words:
        return Block("tell", line)
    if line.starts("with", "timeout"):
        return Block("timeout", line)
    return None


def parse(lines, findings):
    root = Block("script", Line(0, []))
    stack = [root]
    for line in lines:
        block = opened_block(line)
        if line.starts("else") or line.starts("on", "error"):
            wanted = "if" if line.starts("else") else "try"
            if stack[-1].kind != wanted:
                findings.append((line.number, f"'{' '.join(line.tokens[:2])}' outside '{wanted}'"))
            stack[-1].children.append(line)
            stack[-1].clauses.append(line)
        elif line.words[0] == "end" and (len(line.tokens) < 2 or line.words[1] not in ("of",)):
            close(stack, line, findings)
        elif block:
            if block.kind == "handler" and len(stack) > 1:
                findings.append((line.number, f"'{block.name}' begins inside the block of line {stack[-1].line.number}"))
                del stack[1:]
            stack[-1].children.append(block)
            stack.append(block)
        else:
            if line.words[-1] == "then":
                findings.append((line.number, "'then' without 'if'"))
            stack[-1].children.append(line)
    for block in stack[1:]:
        findings.append((block.line.number, f"'{block.line.tokens[0]}' is not closed"))
    return root


def close(stack, line, findings):
    block = stack[-1]
    if block.kind == "script":
        findings.append((line.number, "'end' closes nothing"))
        return
    wanted = block.name if block.kind == "handler" else END_NAMES[block.kind]
    if line.tokens[1:] != [wanted]:
        found = " ".join(line.tokens)
        findings.append((line.number, f"'{found}' where 'end {wanted}' closes line {block.line.number}"))
    stack.pop()


def check_contract(handlers, table, findings):
    contract = dict((name, int(arity)) for arity, name in re.findall(r'ScriptHandler<(\d+)>\s+\w+\{"(\w+)"\}', table))
    if not contract:
        findings.append((0, "the handler table is empty"))
    seen = {}
    for handler in handlers:
        if handler.name.lower() in seen:
            findings.append((handler.line.number, f"'{handler.name}' is '{seen[handler.name.lower()]}' in lower case"))
        seen[handler.name.lower()] = handler.name
    by_name = {handler.name: handler for handler in handlers}
    for name, arity in contract.items():
        if name not in by_name:
            findings.append((0, f"the handler '{name}' is missing"))
        elif len(by_name[name].parameters) != arity:
            found = len(by_name[name].parameters)
            findings.append((by_name[name].line.number, f"'{name}' takes {found} arguments, the table says {arity}"))


def check_calls(root, handlers, findings):
    arity = {handler.name: len(handler.parameters) for handler in handlers}
    spelling = {name.lower(): name for name in arity}
    called = set()
    for line in root.lines():
        if line.starts("on") or line.starts("end"):
            continue
        for place, token in enumerate(line.tokens):
            is_call = place + 1 < len(line.tokens) and line.tokens[place + 1] == "("
            after_my = place > 0 and line.words[place - 1] == "my"
            if after_my and (not is_call or token not in arity):
                findings.append((line.number, f"'my {token}' calls no handler"))
            elif is_call and token.lower() in spelling:
                if not after_my:
                    findings.append((line.number, f"'{token}' is called without 'my'"))
                count = arguments(line.tokens, place + 1)
                if token in arity and count != arity[token]:
                    findings.append((line.number, f"'{token}' takes {arity[token]} arguments, not {count}"))
                called.add(token)
    return called


def arguments(tokens, opening):
    depth, commas = 0, 0
    for place in range(opening, len(tokens)):
        token = tokens[place]
        depth += token in ("(", "{")
        depth -= token in (")", "}")
        commas += token == "," and depth == 1
        if depth == 0:
            return 0 if place == opening + 1 else commas + 1
    return commas + 1


def named_here(block):
    """The names that a handler gives: parameters, variables of set and repeat, errors; with their lines."""
    for parameter in block.parameters:
        yield block.line.number, parameter
    for line in block.lines():
        # A target of "set" that is a word of Terminal's is Terminal's property, as in "set selected of tab 1".
        if "set" in line.words:
            after = line.words.index("set") + 1
            target = line.tokens[after : line.words.index("to", after)] if "to" in line.words[after:] else []
            if len(target) == 1 or target[:1] == ["{"]:
                yield from ((line.number, token) for token in target if token not in "{},")
        if line.starts("repeat", "with"):
            yield line.number, line.tokens[2]
        if line.starts("on", "error"):
            yield from ((line.number, token) for token in line.tokens[2:] if token != "number")


def check_habits(handlers, called, contract_names, findings):
    """What the script promises beyond its form."""
    for handler in handlers:
        number = handler.line.number
        if not handler.line.comment_above:
            findings.append((number, f"'{handler.name}' has no comment"))
        if handler.name not in called and handler.name not in contract_names:
            findings.append((number, f"'{handler.name}' is never called"))
        for line_number, name in named_here(handler):
            if name.lower() in TAKEN:
                findings.append((line_number, f"'{name}' is a word of the scripted application"))
        check_events(handler, False, findings)
        for block in handler.blocks():
            if block.kind == "try":
                check_try(block, findings)
            if block.kind == "repeat" and block.line.has("in"):
                findings.append((block.line.number, "goes through references; count and use ids"))
        for line in handler.lines():
            if line.has("return", "{", "}") and handler.name in contract_names:
                findings.append((line.number, "returns an empty list"))
            if line.has("whose"):
                findings.append((line.number, "'whose' fails on windows without tabs"))
            if line.has("do", "shell", "script"):
                findings.append((line.number, "runs a shell"))


def check_try(block, findings):
    """No error may stay in a `try`: its clause begins by passing refusals and time-outs on."""
    if len(block.clauses) != 1:
        findings.append((block.line.number, "a bare 'try' keeps every error"))
        return
    clause = block.clauses[0]
    after = block.children[block.children.index(clause) + 1 :]
    names = [token for token in clause.tokens[2:] if token.lower() != "number"]
    wanted = ["my", "passOn", "("] + ([names[0], ",", names[1]] if len(names) == 2 else []) + [")"]
    if not after or not isinstance(after[0], Line) or after[0].tokens != wanted:
        findings.append((clause.number, "'on error' does not pass its error on first"))


def check_events(block, in_timeout, findings):
    """Events have a time-out, known targets, and nothing around them; keys are pressed in front only."""
    in_timeout = in_timeout or block.kind == "timeout"
    seen = []
    for child in block.children:
        line = child.line if isinstance(child, Block) else child
        is_tell = line.starts("tell")
        if is_tell and not in_timeout:
            findings.append((line.number, "an event without 'with timeout'"))
        if is_tell and (not line.starts("tell", "application", "id") or line.tokens[3] not in TARGETS):
            findings.append((line.number, "an unknown target"))
        if is_tell and (line.has("delay") or line.has("my")):
            findings.append((line.number, "'delay' and own handlers stay outside 'tell'"))
        if isinstance(child, Block):
            if child.kind == "tell":
                check_tell(child, findings)
            if any(inner.has("key", "code") for inner in child.lines()) and child.kind == "timeout":
                if not any(earlier.has("my", "isinfront") for earlier in seen):
                    findings.append((child.line.number, "presses a key without a look at what is in front"))
            check_events(child, in_timeout, findings)
        seen.append(line)


def check_tell(block, findings):
    for place, child in enumerate(block.children):
        line = child.line if isinstance(child, Block) else child
        if line.has("delay") or line.has("my"):
            findings.append((line.number, "'delay' and own handlers stay outside 'tell'"))
        if line.words == ["activate"] and place != len(block.children) - 1:
            findings.append((line.number, "'activate' comes last"))


def check(source, table):
    """All findings, as (line, sentence); line 0 is the file as a whole."""
    findings = []
    root = parse(logical_lines(source, findings), findings)
    handlers = []
    for child in root.children:
        if isinstance(child, Block) and child.kind == "handler":
            handlers.append(child)
        else:
            line = child.line if isinstance(child, Block) else child
            findings.append((line.number, "a statement outside every handler"))
    contract_names = set(re.findall(r'ScriptHandler<\d+>\s+\w+\{"(\w+)"\}', table))
    check_contract(handlers, table, findings)
    called = check_calls(root, handlers, findings)
    check_habits(handlers, called, contract_names, findings)
    return sorted(set(findings))


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    with open(sys.argv[1], encoding="utf-8") as script, open(sys.argv[2], encoding="utf-8") as table:
        findings = check(script.read(), table.read())
    for line, sentence in findings:
        print(f"{sys.argv[1]}:{line}: {sentence}")
    sys.exit(1 if findings else 0)


if __name__ == "__main__":
    main()
