"""Reads the part of AppleScript that TerminalBridge.applescript uses into a tree.

Lines and blocks come from scripts/checkAppleScript.py. What is not known here is an error, never a guess: a script
that passes was understood word for word. Inside "tell" the application's words win over names, as for the compiler.
"""

import dataclasses
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "scripts"))
import checkAppleScript  # noqa: E402  (the path comes first)
import dictionary  # noqa: E402
from values import MISSING  # noqa: E402


class NotUnderstood(Exception):
    """Words that this part of the language does not have."""


@dataclasses.dataclass(frozen=True)
class Node:
    """A part of a sentence: what it is, its own data, and its parts. Statements know their line."""

    kind: str
    data: tuple = ()
    line: int = 0


@dataclasses.dataclass(frozen=True)
class Handler:
    name: str
    parameters: tuple
    body: tuple
    line: int


def node(kind, *data):
    return Node(kind, data)


# From the loosest to the tightest, as the Language Guide's table has them; the operators of a level group from the left.
OPERATORS = [
    ["or"],
    ["and"],
    ["is not", "is", "does not contain", "contains", "starts with", ">", "<"],
    ["as"],
    ["&"],
    ["+", "-"],
]
COMPARISONS, COERCION = 2, 3


class Sentence:
    """The tokens of one statement, read from the left."""

    def __init__(self, line, tokens, application=None):
        self.line, self.tokens, self.application, self.place = line, tokens, application, 0

    def fail(self):
        raise NotUnderstood(f"line {self.line}: {' '.join(self.tokens[self.place :]) or 'the end'}")

    def at_end(self):
        return self.place == len(self.tokens)

    def next_is(self, words):
        wanted = words.lower().split()
        found = [token.lower() for token in self.tokens[self.place : self.place + len(wanted)]]
        return found == wanted

    def accept(self, words):
        if not self.next_is(words):
            return False
        self.place += len(words.split())
        return True

    def expect(self, words):
        if not self.accept(words):
            self.fail()

    def take(self):
        if self.at_end():
            self.fail()
        self.place += 1
        return self.tokens[self.place - 1]

    def name(self):
        word = self.take()
        if not (word[0].isalpha() or word[0] == "_"):
            self.place -= 1
            self.fail()
        return word.lower()

    def text(self):
        token = self.take()
        if not token.startswith('"'):
            self.place -= 1
            self.fail()
        return token[1:-1].replace('\\"', '"').replace("\\n", "\n").replace("\\\\", "\\")

    def names(self, closing):
        """Names with commas between them, up to a bracket."""
        found = [self.name()]
        while self.accept(","):
            found.append(self.name())
        self.expect(closing)
        return tuple(found)

    def expressions(self, closing):
        found = []
        if self.accept(closing):
            return ()
        found.append(self.expression())
        while self.accept(","):
            found.append(self.expression())
        self.expect(closing)
        return tuple(found)

    # Expressions ------------------------------------------------------------------------------------------------------

    def expression(self, level=0):
        if level == COMPARISONS and self.accept("not"):
            return node("not", self.expression(COMPARISONS))
        if level == len(OPERATORS):
            return self.signed()
        left = self.expression(level + 1)
        while True:
            if level == COMPARISONS and self.accept("is running"):
                left = node("is running", left)
                continue
            operator = next((words for words in OPERATORS[level] if self.accept(words)), None)
            if operator is None:
                return left
            if level == COERCION:
                left = node("as", self.known_class(), left)
            else:
                left = node("operator", operator, left, self.expression(level + 1))

    def known_class(self):
        name = self.name()
        if name not in ("text", "integer"):
            raise NotUnderstood(f"line {self.line}: as {name}")
        return name

    def signed(self):
        if self.accept("-"):
            return node("minus", self.signed())
        return self.primary()

    def primary(self):
        if self.at_end():
            self.fail()
        token = self.tokens[self.place]
        if token.startswith('"'):
            return node("value", self.text())
        if token[0].isdigit():
            self.place += 1
            return node("value", float(token) if "." in token else int(token))
        if self.accept("("):
            inner = self.expression()
            self.expect(")")
            return inner
        if self.accept("{"):
            return node("list", self.expressions("}"))
        for words, value in (("missing value", MISSING), ("true", True), ("false", False)):
            if self.accept(words):
                return node("value", value)
        if self.accept("my"):
            name = self.name()
            self.expect("(")
            return node("call", name, self.expressions(")"))
        if self.accept("application id"):
            return node("application", self.text())
        return self.part() or self.of_application() or self.variable()

    def part(self):
        """A part of a value: "item 2 of rows", "count of rows", "text -5 thru -1 of line"."""
        if self.accept("count of"):
            return node("count", self.counted())
        if self.accept("length of"):
            return node("length", self.primary())
        if self.accept("paragraphs of"):
            return node("paragraphs", self.primary())
        for words in ("item", "paragraph"):
            if self.accept(words):
                position = self.signed()
                self.expect("of")
                return node(words, position, self.primary())
        if self.accept("text from paragraph 1 to paragraph"):
            last = self.signed()
            self.expect("of")
            return node("through paragraph", last, self.primary())
        if self.accept("text"):
            first = self.signed()
            self.expect("thru")
            last = self.signed()
            self.expect("of")
            return node("text range", first, last, self.primary())
        return None

    def counted(self):
        for words, kind in (("tabs of", "tab"),):
            if self.application and self.accept(words):
                return node("elements", self.application, kind, self.object())
        return self.primary()

    def of_application(self):
        """A property or a command of the application that is told, or the one property that the system answers."""
        if not self.application:
            if self.accept("frontmost of application id"):
                return node("is frontmost", self.text())
            return None
        if self.application == dictionary.TERMINAL and self.accept("do script"):
            return self.do_script()
        name = self.property()
        if name is None:
            return None
        owner = self.object() if self.accept("of") else node("the application")
        if not owner_fits(name, owner, self.application):
            self.fail()
        return node("get", self.application, name, owner)

    def property(self):
        names = dictionary.property_names(self.application)
        return next((name for name in names if self.accept(name)), None)

    def do_script(self):
        text = self.expression()
        where = self.object() if self.accept("in") else None
        return node("do script", text, where)

    def object(self):
        """An object of the application that is told."""
        if self.accept("every window"):
            return node("every window")
        if self.accept("window id"):
            return node("window", self.signed())
        if self.accept("tab"):
            position = self.signed()
            self.expect("of")
            owner = self.object()
            if owner.kind != "window":
                self.fail()
            return node("tab", position, owner)
        return node("variable", self.name())

    def variable(self):
        name = self.name()
        if self.next_is("("):
            self.fail()
        return node("variable", name)

    # Statements -------------------------------------------------------------------------------------------------------

    def statement(self):
        found = self.unfinished_statement()
        if not self.at_end():
            self.fail()
        return dataclasses.replace(found, line=self.line)

    def unfinished_statement(self):
        if self.accept("return"):
            return node("return", self.expression())
        if self.accept("error"):
            text = self.expression()
            self.expect("number")
            return node("error", text, self.expression())
        if self.accept("delay"):
            return node("delay", self.expression())
        if self.accept("exit repeat"):
            return node("exit repeat")
        if self.accept("set end of"):
            target = self.primary()
            self.expect("to")
            return node("append", target, self.expression())
        if self.accept("set"):
            return self.assignment()
        if self.accept("tell application id"):
            application = self.known_application()
            self.expect("to")
            inner = Sentence(self.line, self.tokens[self.place :], application)
            self.place = len(self.tokens)
            return node("tell", application, (inner.statement(),))
        return self.command() or self.bare_call()

    def bare_call(self):
        """A call, or "do script", whose answer is not wanted."""
        found = self.expression()
        if found.kind not in ("call", "do script"):
            raise NotUnderstood(f"line {self.line}: {' '.join(self.tokens)}")
        return node("expression", found)

    def known_application(self):
        name = self.text()
        if name not in dictionary.PROPERTIES:
            raise NotUnderstood(f"line {self.line}: the application {name}")
        return name

    def command(self):
        if not self.application:
            return None
        for words in ("launch", "activate"):
            if self.accept(words):
                return node("command", self.application, words)
        if self.application == dictionary.TERMINAL and self.accept("close"):
            target = self.object()
            self.expect("saving no")
            return node("close", self.application, target)
        if self.application == dictionary.SYSTEM_EVENTS and self.accept("key code"):
            return node("key code", self.application, self.expression())
        return None

    def assignment(self):
        if self.accept("{"):
            names = self.names("}")
            self.expect("to")
            return node("set names", names, self.expression())
        name = self.property() if self.application else None
        if name is not None:
            self.expect("of")
            owner = self.object()
            if not owner_fits(name, owner, self.application):
                self.fail()
            if dictionary.PROPERTIES[self.application][owner.kind][name] != dictionary.WRITE:
                raise NotUnderstood(f"line {self.line}: '{name}' can only be read")
            self.expect("to")
            return node("put", self.application, name, owner, self.expression())
        target = self.name()
        self.expect("to")
        return node("set", target, self.expression())


def owner_fits(name, owner, application):
    kinds = {"every window": {"window"}, "the application": {"application"}, "variable": {"window", "tab"}}
    return bool(kinds.get(owner.kind, {owner.kind}) & dictionary.kind_of(name, application))


# Blocks ---------------------------------------------------------------------------------------------------------------


def read(source):
    """The handlers of a script by their name in lower case; "run" has the statements outside of handlers."""
    findings = []
    root = checkAppleScript.parse(checkAppleScript.logical_lines(source, findings), findings)
    if findings:
        raise NotUnderstood(f"line {findings[0][0]}: {findings[0][1]}")
    handlers, outside = {}, []
    for block in root.children:
        if not isinstance(block, checkAppleScript.Block) or block.kind != "handler":
            outside.append(block)
            continue
        parameters = tuple(parameter.lower() for parameter in block.parameters)
        body = statements(block.children, None)
        handlers[block.name.lower()] = Handler(block.name, parameters, body, block.line.number)
    if outside:
        handlers["run"] = Handler("run", (), statements(outside, None), 0)
    return handlers


def statements(children, application):
    return tuple(one(child, application) for child in children)


def one(child, application):
    if isinstance(child, checkAppleScript.Block):
        return dataclasses.replace(BLOCKS[child.kind](child, application), line=child.line.number)
    if child.starts("if"):
        return one_line_if(child, application)
    return Sentence(child.number, child.tokens, application).statement()


def condition(line, first, last, application):
    sentence = Sentence(line.number, line.tokens[first:last], application)
    found = sentence.expression()
    if not sentence.at_end():
        sentence.fail()
    return found


def one_line_if(line, application):
    if not line.has("then"):
        raise NotUnderstood(f"line {line.number}: 'if' without 'then'")
    then = line.words.index("then")
    rest = Sentence(line.number, line.tokens[then + 1 :], application).statement()
    return Node("if", (((condition(line, 1, then, application), (rest,)),), ()), line.number)


def arms(block):
    """The children of a block between its clauses: (the line that opens them, they)."""
    found = [(block.line, [])]
    for child in block.children:
        if child in block.clauses:
            found.append((child, []))
        else:
            found[-1][1].append(child)
    return found


def if_block(block, application):
    choices, otherwise = [], ()
    for line, children in arms(block):
        body = statements(children, application)
        if line.words == ["else"]:
            otherwise = body
        else:
            first = 2 if line.starts("else", "if") else 1
            choices.append((condition(line, first, -1, application), body))
    return node("if", tuple(choices), otherwise)


def repeat_block(block, application):
    line = block.line
    body = statements(block.children, application)
    if line.words[-1] == "times":
        return node("repeat times", condition(line, 1, -1, application), body)
    if line.starts("repeat", "while"):
        return node("repeat while", condition(line, 2, None, application), body)
    sentence = Sentence(line.number, line.tokens[1:], application)
    sentence.expect("with")
    counter = sentence.name()
    sentence.expect("from")
    first = sentence.expression()
    sentence.expect("to")
    last = sentence.expression()
    if not sentence.at_end():
        sentence.fail()
    return node("repeat from", counter, first, last, body)


def try_block(block, application):
    parts = arms(block)
    if len(parts) != 2:
        raise NotUnderstood(f"line {block.line.number}: 'try' with {len(parts) - 1} clauses")
    clause, handling = parts[1]
    words = clause.words
    if len(words) != 5 or words[3] != "number":
        raise NotUnderstood(f"line {clause.number}: {' '.join(words)}")
    return node("try", statements(parts[0][1], application), (words[2], words[4]), statements(handling, application))


def timeout_block(block, application):
    line = block.line
    if not line.starts("with", "timeout", "of") or line.words[-1] not in ("second", "seconds"):
        raise NotUnderstood(f"line {line.number}: {' '.join(line.words)}")
    return node("timeout", condition(line, 3, -1, application), statements(block.children, application))


def tell_block(block, application):
    if application:
        raise NotUnderstood(f"line {block.line.number}: 'tell' inside 'tell'")
    sentence = Sentence(block.line.number, block.line.tokens)
    sentence.expect("tell application id")
    name = sentence.known_application()
    return node("tell", name, statements(block.children, name))


BLOCKS = {"if": if_block, "repeat": repeat_block, "try": try_block, "timeout": timeout_block, "tell": tell_block}
