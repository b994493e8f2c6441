"""The words of the scripted applications as far as the script uses them; tests/macos/checkDictionary.py compares them
with declarations that were made from the applications' own dictionaries.
"""

TERMINAL = "com.apple.Terminal"
SYSTEM_EVENTS = "com.apple.systemevents"

READ, WRITE = "read", "read and write"

# Application, class of object, property: whether it can be set.
PROPERTIES = {
    TERMINAL: {
        "application": {"frontmost": READ},
        "window": {
            "id": READ,
            "name": READ,
            "index": WRITE,
            "bounds": WRITE,
            "miniaturized": WRITE,
            "visible": WRITE,
            "frontmost": WRITE,
        },
        "tab": {
            "contents": READ,
            "history": READ,
            "busy": READ,
            "processes": READ,
            "tty": READ,
            "selected": WRITE,
            "custom title": WRITE,
        },
    },
    SYSTEM_EVENTS: {"application": {"UI elements enabled": READ}},
}

# Application, command: its parameters. "launch", "activate" and "count" are every application's.
COMMANDS = {
    TERMINAL: {"do script": ["in"], "close": ["saving"]},
    SYSTEM_EVENTS: {"key code": []},
}


def property_names(application):
    """Every property, the longest name first, so that "custom title" is not read as "custom"."""
    names = {name for properties in PROPERTIES[application].values() for name in properties}
    return sorted(names, key=len, reverse=True)


def kind_of(property_name, application):
    """The classes of objects that have a property."""
    return {kind for kind, properties in PROPERTIES[application].items() if property_name in properties}
