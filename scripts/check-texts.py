#!/usr/bin/env python3
"""Finds texts of the window that no translator would see, and translations that are not finished or not up to date.

Prints a line for each finding, and nothing when all is well: check-texts.py [FOLDER], the folder being the root of the
repository unless given.
"""
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

ROOT = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent)

QUOTE = re.compile(r"""'\\?"'""")  # a character, which begins no literal
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
# In QML the values of these are names, not texts, and so is the key that begins a line of an object.
QML_NAMES = re.compile(
    r"^\s*(import\b|(readonly )?property \w+ (symbol|color) *:|(\w+\.)?(objectName|symbol|source|sequences?|view|property|color|border\.color|duration|fillMode)\s*:"
    r"|readonly property color \w+:)")
QML_KEY = re.compile(r'^\s*"\w+":')
# What tells nobody anything: the name of the product, a colour, and a number's format.
QML_NO_TEXTS = {"Velmora", "transparent", "f"}

# In C++: what is handed to a translation, or is for developers and not for the screen.
CPP_TRANSLATED = re.compile(r"\b(?:tr|translate|of|QT_TR_NOOP|QT_TRANSLATE_NOOP|Q_DECLARE_TR_FUNCTIONS)\s*\(")
CPP_OTHERS = re.compile(
    r"#\s*include|QML_UNCREATABLE|\bthrow\b|runtime_error|invalid_argument|\blog\w*(?:\(\))?\.(?:debug|info|warning|error)\(|"
    r"fputs|fprintf|puts\(|qputenv|Worker\s*\w*_?\{|stayAwake\(|static_assert")
# Every literal with a letter counts as a text, however short, unless it looks like a name that a program reads, or stands
# where one belongs, or is one of those below.
ESCAPES = re.compile(r"\\.")
MACHINE_NAMES = re.compile(
    r"[a-z]+[a-z0-9]*[A-Z]\w*|(?:[A-Z][a-z]+){2,}"        # sessionId, TryExec
    r"|[A-Z][A-Z0-9]*_[A-Z0-9_]+|\w[\w-]*(?:\.\w[\w-]*)+"  # XDG_CONFIG_HOME, app.velmora.Velmora
    r"|\.\w+|\w+=|(?:qrc)?:?/[\w./-]+|[a-z][a-z.-]*:[\w./?-]+")  # .svg, background=, :/icons/x, appstream:x
CPP_KEYS = re.compile(r'\w+Role, "([a-z]\w*)"|\{"([a-z]\w*)",|\bkey\("([a-z]\w*)"\)|\bwriteMember\(\w+, "([a-z]\w*)"')
CPP_NAMES = {
    # Words of desktop entries, of D-Bus and of commands. The comment of the desktop entry is in English alone.
    "Type", "Name", "Comment", "Icon", "Terminal", "Hidden", "Application", "Exec", "Cancel", "Package", "Finished",
    "Destroy", "Disconnected", "Contents", "Helpers", "Korean", "English", "한국어", "Velmora", "Fusion", "Read",
    "openclaw mcp", "Let AI coding agents use your terminal, within limits that you set", "X-GNOME-Autostart-enabled",
    "autostart", "velmora", "claude-desktop", "openclaw", "openclaw-cli", "pwd", "tmux", "status", "xcb", "PNG",
    # Symbols, keys of settings and what they hold.
    "gauge", "gearshape", "terminal", "color-scheme", "language", "en", "ko", "system", "true", "false",
    # Formats of dates and times.
    "yy", "yyyy", "yyyy-MM-dd", "ss", "mm", "mm:ss", "HH:mm", "HH:mm:ss",
}
# Of libraries, each with its licence.
NOTICES = re.compile(r"(?:[\w ]+ \([\w.-]+\)(?:, )?)+")
CPP_NO_WINDOW = {"VelmoraApp/main.cpp"}  # speaks on the terminal


def without(text, call):
    """The text without the calls whose opening `call` finds, to the closing parenthesis."""
    result, position = [], 0
    while match := call.search(text, position):
        result.append(text[position:match.start()])
        depth, end, quoted = 1, match.end(), False
        while depth and end < len(text):
            character = text[end]
            if character == "\\":
                end += 1
            elif character == '"':
                quoted = not quoted
            elif not quoted:
                depth += (character == "(") - (character == ")")
            end += 1
        result.append("\n" * text.count("\n", match.start(), end))
        position = end
    return "".join(result) + text[position:]


def without_comments(text):
    text = re.sub(r"/\*.*?\*/", lambda match: "\n" * match.group().count("\n"), text, flags=re.DOTALL)
    return re.sub(r'("(?:[^"\\\n]|\\.)*")|//[^\n]*', lambda match: match.group(1) or "", text)


def has_letters(literal):
    """Those of escapes and of placeholders are none."""
    return re.search(r"[^\W\d_]", re.sub(r"%n|%L?\d+", "", ESCAPES.sub("", literal))) is not None


def escaped_from_qml(path):
    text = without(without_comments(path.read_text(encoding="utf-8")), re.compile(r"\bqsTr\s*\("))
    for number, line in enumerate(text.split("\n"), 1):
        if QML_NAMES.search(line):
            continue
        for literal in LITERAL.findall(QML_KEY.sub("", line)):
            if has_letters(literal) and literal not in QML_NO_TEXTS:
                yield number, literal


def escaped_from_cpp(path):
    text = without(without_comments(QUOTE.sub("' '", path.read_text(encoding="utf-8"))), CPP_TRANSLATED)
    statement = ""
    for number, line in enumerate(text.split("\n"), 1):
        statement = line if re.search(r"[;{}]\s*$", statement) or not statement.strip() else statement + line
        if CPP_OTHERS.search(statement):
            continue
        for literal in LITERAL.findall(line):
            if is_text_in_cpp(literal, line):
                yield number, literal


def is_text_in_cpp(literal, line):
    return (has_letters(literal) and literal not in CPP_NAMES and not MACHINE_NAMES.fullmatch(literal)
            and not any(literal in keys for keys in CPP_KEYS.findall(line)) and not NOTICES.fullmatch(literal))


def messages(path):
    """{(context, source): its forms in the language, or None when they are not finished}"""
    found = {}
    for context in ElementTree.parse(path).getroot().iter("context"):
        for message in context.iter("message"):
            translation = message.find("translation")
            forms = [form.text for form in translation.iter("numerusform")] or [translation.text]
            finished = translation.get("type") is None and all(forms)
            found[context.findtext("name"), message.findtext("source")] = forms if finished else None
    return found


def placeholders(text):
    """What is put in at run time: %1, %L2, %n. A "%" before anything else is itself."""
    return sorted(set(re.findall(r"%(?:n|L?\d{1,2}|Ln)", text)))


def stale(path, fresh):
    kept, wanted = messages(path), messages(fresh)
    for context, source in sorted(wanted.keys() - kept.keys()):
        yield f'{path.name}: {context}: "{source}" is missing; run scripts/translations.sh'
    for context, source in sorted(kept.keys() - wanted.keys()):
        yield f'{path.name}: {context}: "{source}" is said no more; run scripts/translations.sh'
    for (context, source), forms in sorted(kept.items()):
        if forms is None:
            yield f'{path.name}: {context}: "{source}" is not translated'
            continue
        for form in forms:
            if placeholders(form) != placeholders(source):
                yield f'{path.name}: {context}: "{form}" has other placeholders than "{source}"'


# What the bridge says to clients, the window shows, too: BridgeTexts.cpp lists it for the translators.
ADJACENT = re.compile(r'"(?:[^"\\\n]|\\.)*"(?:\s*"(?:[^"\\\n]|\\.)*")*')
A_SENTENCE = re.compile(r"(?:[A-Z`]|tmux |repeatCount ).* .*\.")
BRIDGE_TEXTS = "VelmoraApp/AppModel/BridgeTexts.cpp"


def literals(path):
    """Each string, in one piece, with whether it stands alone: not joined to what only a run can tell."""
    text = without_comments(path.read_text(encoding="utf-8"))
    for match in ADJACENT.finditer(text):
        alone = not text[:match.start()].rstrip().endswith("+") and not text[match.end():].lstrip().startswith("+")
        yield text.count("\n", 0, match.start()) + 1, "".join(LITERAL.findall(match.group())), alone


def unknown_to_the_window():
    known = {literal for _, literal, _ in literals(ROOT / BRIDGE_TEXTS)}
    for folder in ("BridgeCore", "TerminalAutomation"):
        for path in sorted((ROOT / folder).rglob("*.*")):
            if path.suffix not in {".cpp", ".h"} or "StructuredError" not in path.read_text(encoding="utf-8"):
                continue
            for number, literal, alone in literals(path):
                if alone and A_SENTENCE.fullmatch(literal) and literal not in known:
                    yield path.relative_to(ROOT), number, literal


def main():
    for name, number, literal in unknown_to_the_window():
        print(f'{name}:{number}: "{literal}" is missing in {BRIDGE_TEXTS}')
    for path in sorted((ROOT / "VelmoraApp").rglob("*.*")):
        name = path.relative_to(ROOT).as_posix()
        escaped = {".qml": escaped_from_qml, ".cpp": escaped_from_cpp, ".h": escaped_from_cpp}.get(path.suffix)
        if escaped and name not in CPP_NO_WINDOW:
            for number, literal in escaped(path):
                print(f'{name}:{number}: "{literal}" is not translated: qsTr() in QML, tr() in C++')
    with tempfile.TemporaryDirectory() as folder:
        # lupdate says of every class that it has not seen declared; what it finds is compared below.
        subprocess.run([ROOT / "scripts/translations.sh", folder], check=True, stderr=subprocess.DEVNULL)
        for fresh in sorted(pathlib.Path(folder).glob("*.ts")):
            for finding in stale(ROOT / "translations" / fresh.name, fresh):
                print(finding)


main()
