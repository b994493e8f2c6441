"""Runs a script that syntax.py has read, against a desktop that answers its events (desktop.py)."""

import syntax
from values import (
    MISSING,
    NO_SUCH_OBJECT,
    NOT_DEFINED,
    Reference,
    ScriptError,
    as_boolean,
    as_integer,
    as_text,
    contains,
    characters,
    equal,
    is_number,
    item,
    paragraphs,
    text_range,
    through_paragraph,
    CANNOT_CONVERT,
)

HANDLER_NOT_FOUND = -1708
WRONG_ARGUMENTS = -1721
# How long an event may take outside "with timeout".
DEFAULT_SECONDS = 120
# Far more than any handler takes. A loop that time does not end is a fault of the script.
MOST_STEPS = 30_000


class DoesNotEnd(Exception):
    """A script that runs in circles."""


class Returned(Exception):
    def __init__(self, value):
        self.value = value


class RepeatLeft(Exception):
    pass


class Interpreter:
    """`handlers` from syntax.read; `desktop` has is_running, is_frontmost, sleep and event."""

    def __init__(self, handlers, desktop):
        self.handlers, self.desktop = handlers, desktop
        self.steps = 0

    def step(self):
        self.steps += 1
        if self.steps > MOST_STEPS:
            raise DoesNotEnd(f"more than {MOST_STEPS} statements")

    def call(self, name, *arguments):
        """Calls a handler as the application does, with positional arguments."""
        handler = self.handlers.get(name.lower())
        if handler is None:
            raise ScriptError(HANDLER_NOT_FOUND, name)
        if len(arguments) != len(handler.parameters):
            raise ScriptError(WRONG_ARGUMENTS, name)
        return Frame(self, dict(zip(handler.parameters, arguments))).result_of(handler)


class Frame:
    """One call of a handler: its variables and its time-out."""

    def __init__(self, interpreter, variables):
        self.interpreter, self.variables, self.seconds = interpreter, variables, DEFAULT_SECONDS

    def result_of(self, handler):
        try:
            self.run(handler.body)
        except Returned as returned:
            return returned.value
        return MISSING

    def run(self, statements):
        for statement in statements:
            self.interpreter.step()
            STATEMENTS[statement.kind](self, *statement.data)

    def value(self, expression):
        return EXPRESSIONS[expression.kind](self, *expression.data)

    def send(self, application, verb, *arguments):
        return self.interpreter.desktop.event(application, self.seconds, verb, *arguments)

    # Statements -------------------------------------------------------------------------------------------------------

    def do_return(self, expression):
        raise Returned(self.value(expression))

    def do_error(self, text, number):
        raise ScriptError(self.value(number), self.value(text))

    def do_delay(self, seconds):
        self.interpreter.desktop.sleep(self.value(seconds))

    def do_exit(self):
        raise RepeatLeft

    def do_append(self, target, expression):
        self.value(target).append(self.value(expression))

    def do_set(self, name, expression):
        self.variables[name] = self.value(expression)

    def do_set_names(self, names, expression):
        values = self.value(expression)
        for position, name in enumerate(names, start=1):
            self.variables[name] = item(values, position)

    def do_put(self, application, name, owner, expression):
        self.send(application, "set", name, self.object(owner), self.value(expression))

    def do_command(self, application, verb):
        self.send(application, verb)

    def do_close(self, application, target):
        self.send(application, "close", self.object(target))

    def do_key_code(self, application, number):
        self.send(application, "key code", self.value(number))

    def do_expression(self, expression):
        self.value(expression)

    def do_tell(self, application, body):
        self.run(body)

    def do_timeout(self, seconds, body):
        outer, self.seconds = self.seconds, self.value(seconds)
        try:
            self.run(body)
        finally:
            self.seconds = outer

    def do_if(self, choices, otherwise):
        for condition, body in choices:
            if as_boolean(self.value(condition)):
                return self.run(body)
        return self.run(otherwise)

    def do_try(self, body, names, handling):
        try:
            self.run(body)
        except ScriptError as error:
            self.variables.update(zip(names, (error.text, error.number)))
            self.run(handling)

    def repeat(self, turns, body):
        try:
            for _ in turns:
                self.interpreter.step()
                self.run(body)
        except RepeatLeft:
            pass

    def do_repeat_times(self, times, body):
        self.repeat(range(self.value(times)), body)

    def do_repeat_while(self, condition, body):
        self.repeat(iter(lambda: as_boolean(self.value(condition)), False), body)

    def do_repeat_from(self, counter, first, last, body):
        def turns():
            for number in range(as_integer(self.value(first)), as_integer(self.value(last)) + 1):
                self.variables[counter] = number
                yield number

        self.repeat(turns(), body)

    # Expressions ------------------------------------------------------------------------------------------------------

    def variable(self, name):
        if name not in self.variables:
            raise ScriptError(NOT_DEFINED, f"The variable {name} is not defined.")
        return self.variables[name]

    def object(self, described):
        """The reference that a description of an object makes."""
        kind, data = described.kind, described.data
        if kind == "variable":
            return self.variable(*data)
        if kind == "tab":
            return Reference("tab", self.value(data[0]), self.object(data[1]))
        return Reference(kind, *map(self.value, data))

    def list_of(self, parts):
        return [self.value(part) for part in parts]

    def call(self, name, arguments):
        return self.interpreter.call(name, *map(self.value, arguments))

    def operator(self, name, left, right):
        # "and" and "or" look at their right side only when it matters.
        if name in ("and", "or"):
            first = as_boolean(self.value(left))
            return as_boolean(self.value(right)) if first is (name == "and") else first
        return OPERATORS[name](self.value(left), self.value(right))

    def coerced(self, kind, expression):
        return {"text": as_text, "integer": as_integer}[kind](self.value(expression))

    def count(self, counted):
        values = self.value(counted)
        if isinstance(values, int):
            return values
        return length(values)

    def item(self, position, values):
        return item(self.list(values), as_integer(self.value(position)))

    def list(self, expression):
        values = self.value(expression)
        if not isinstance(values, list):
            raise ScriptError(NO_SUCH_OBJECT, "Can't get items of what is no list.")
        return values

    def text_of(self, expression):
        return as_text(self.value(expression))

    def get(self, application, name, owner):
        return self.send(application, "get", name, self.object(owner))

    def elements(self, application, kind, owner):
        return self.send(application, "count", kind, self.object(owner))

    def do_script(self, text, where):
        return self.send("com.apple.Terminal", "do script", self.value(text), self.object(where) if where else None)


def length(value):
    if isinstance(value, list):
        return len(value)
    return len(characters(as_text(value)))


def in_order(compare):
    def checked(left, right):
        if not (is_number(left) and is_number(right)):
            raise ScriptError(CANNOT_CONVERT, "Only numbers are compared here.")
        return compare(left, right)

    return checked


OPERATORS = {
    "is": equal,
    "is not": lambda left, right: not equal(left, right),
    "contains": contains,
    "does not contain": lambda left, right: not contains(left, right),
    "starts with": lambda left, right: as_text(left).lower().startswith(as_text(right).lower()),
    ">": in_order(lambda left, right: left > right),
    "<": in_order(lambda left, right: left < right),
    "&": lambda left, right: as_text(left) + as_text(right),
    "+": in_order(lambda left, right: left + right),
    "-": in_order(lambda left, right: left - right),
}

STATEMENTS = {
    "return": Frame.do_return,
    "error": Frame.do_error,
    "delay": Frame.do_delay,
    "exit repeat": Frame.do_exit,
    "append": Frame.do_append,
    "set": Frame.do_set,
    "set names": Frame.do_set_names,
    "put": Frame.do_put,
    "command": Frame.do_command,
    "close": Frame.do_close,
    "key code": Frame.do_key_code,
    "expression": Frame.do_expression,
    "tell": Frame.do_tell,
    "timeout": Frame.do_timeout,
    "if": Frame.do_if,
    "try": Frame.do_try,
    "repeat times": Frame.do_repeat_times,
    "repeat while": Frame.do_repeat_while,
    "repeat from": Frame.do_repeat_from,
}

EXPRESSIONS = {
    "value": lambda frame, value: value,
    "list": Frame.list_of,
    "variable": Frame.variable,
    "call": Frame.call,
    "operator": Frame.operator,
    "not": lambda frame, part: not as_boolean(frame.value(part)),
    "minus": lambda frame, part: -frame.value(part),
    "as": Frame.coerced,
    "count": Frame.count,
    "length": lambda frame, part: length(frame.value(part)),
    "item": Frame.item,
    "paragraphs": lambda frame, part: paragraphs(frame.text_of(part)),
    "paragraph": lambda frame, position, part: item(paragraphs(frame.text_of(part)), frame.value(position)),
    "through paragraph": lambda frame, last, part: through_paragraph(frame.text_of(part), frame.value(last)),
    "text range": lambda frame, first, last, part: text_range(frame.text_of(part), frame.value(first), frame.value(last)),
    "application": lambda frame, name: name,
    "is running": lambda frame, part: frame.interpreter.desktop.is_running(frame.value(part)),
    "is frontmost": lambda frame, name: frame.interpreter.desktop.is_frontmost(name),
    "get": Frame.get,
    "elements": Frame.elements,
    "do script": Frame.do_script,
}


def load(source, desktop):
    return Interpreter(syntax.read(source), desktop)
