"""AppleScript's values, and what its operators do with them.

Texts, integers, reals, booleans and lists are Python's own. Where the language converts in ways that the script does
not rely on, there is an error here instead of a guess.
"""

import dataclasses
import re
import unicodedata

# Numbers of the errors that the language itself raises.
CANNOT_CONVERT = -1700
NO_SUCH_OBJECT = -1728
NOT_DEFINED = -2753


class ScriptError(Exception):
    """An error that a script can catch."""

    def __init__(self, number, text=""):
        super().__init__(number, text)
        self.number, self.text = number, text


class Missing:
    def __repr__(self):
        return "missing value"


MISSING = Missing()


@dataclasses.dataclass(frozen=True)
class Reference:
    """An object of an application: Reference("tab", 1, Reference("window", 41)) is tab 1 of window id 41."""

    kind: str
    key: object = None
    owner: object = None


def is_number(value):
    return type(value) in (int, float)


def equal(left, right):
    """The operator "is": texts are equal in whatever case, values of different kinds never."""
    if isinstance(left, str) and isinstance(right, str):
        return left.lower() == right.lower()
    if isinstance(left, list) and isinstance(right, list):
        return len(left) == len(right) and all(map(equal, left, right))
    if is_number(left) and is_number(right):
        return left == right
    return type(left) is type(right) and left == right


def contains(whole, part):
    """A list contains a list when it stands in it as a run; a single value counts as a list of one."""
    if isinstance(whole, list):
        part = part if isinstance(part, list) else [part]
        places = range(len(whole) - len(part) + 1)
        return any(all(map(equal, whole[place : place + len(part)], part)) for place in places)
    return as_text(part).lower() in as_text(whole).lower()


def as_text(value):
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, (str, int)):
        return str(value)
    raise ScriptError(CANNOT_CONVERT, f"Can't make {source_form(value)} into type text.")


def as_integer(value):
    if not is_number(value):
        raise ScriptError(CANNOT_CONVERT, f"Can't make {source_form(value)} into type integer.")
    return round(value)


def as_boolean(value):
    if not isinstance(value, bool):
        raise ScriptError(CANNOT_CONVERT, f"Can't make {source_form(value)} into type boolean.")
    return value


def characters(text):
    """What the language counts as characters: a letter with its accents, an emoji with its parts, is one."""
    found = []
    for point in text:
        joined = found and (unicodedata.combining(point) or point in "\u200d\ufe0f" or found[-1].endswith("\u200d"))
        if joined:
            found[-1] += point
        else:
            found.append(point)
    return found


PARAGRAPH_END = re.compile("\r\n|[\r\n\u2028\u2029]")


def paragraphs(text):
    return PARAGRAPH_END.split(text)


def through_paragraph(text, last):
    """The text up to the end of a paragraph, without the line end after it."""
    ends = [match.start() for match in PARAGRAPH_END.finditer(text)] + [len(text)]
    if not 1 <= last <= len(ends):
        raise ScriptError(NO_SUCH_OBJECT, f"Can't get paragraph {last}.")
    return text[: ends[last - 1]]


def item(values, position):
    """Item 1 is the first, item -1 the last."""
    place = position - 1 if position > 0 else len(values) + position
    if position == 0 or not 0 <= place < len(values):
        raise ScriptError(NO_SUCH_OBJECT, f"Can't get item {position}.")
    return values[place]


def text_range(text, first, last):
    """The characters from one position through another, each from 1 or, negative, from the end."""
    parts = characters(text)
    item(parts, first)
    item(parts, last)
    start = first - 1 if first > 0 else len(parts) + first
    end = last if last > 0 else len(parts) + last + 1
    return "".join(parts[start:end])


def source_form(value):
    """A value as `osascript -s s` prints it."""
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, str):
        quoted = value.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n").replace("\t", "\\t")
        return f'"{quoted}"'
    if isinstance(value, list):
        return "{" + ", ".join(map(source_form, value)) + "}"
    return repr(value)
