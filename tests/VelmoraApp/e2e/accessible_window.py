"""The application's window as the accessibility bus shows it: controls are found by role and name."""

import time

import pyatspi

PATIENCE = 20


def eventually(question, claim):
    """The first answer to `question` that is not false or nothing."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            answer = question()
            if answer:
                return answer
        except Exception:  # the tree changes while it is read; what is gone is asked for again
            pass
        time.sleep(0.05)
    raise AssertionError(f"never true: {claim}")


# Qt 6.4 gives some controls their own role, whatever role the window gives them.
OWN_ROLES = {"heading": "label", "page tab": "list item"}


def role_of(node):
    """In the words that at-spi2 2.46 has; 2.56 says "button"."""
    name = node.getRoleName()
    return "push button" if name == "button" else name


def find_all(node, role, showing=True):
    has_role = role_of(node) in (role, OWN_ROLES.get(role))
    if has_role and (not showing or node.getState().contains(pyatspi.STATE_SHOWING)):
        yield node
    for child in node:
        if child is not None:
            yield from find_all(child, role, showing)


class AccessibleWindow:
    def __init__(self, name):
        self.name = name
        self.application = eventually(self._application, f"{name} is on the bus")

    def _application(self):
        desktop = pyatspi.Registry.getDesktop(0)
        return next((each for each in desktop if each and each.name == self.name and len(each)), None)

    def names(self, role):
        return [node.name for node in find_all(self.application, role)]

    def shows(self, role, name):
        return name in self.names(role)

    def holds(self, role, name):
        """In sight or not."""
        return any(node.name == name for node in find_all(self.application, role, showing=False))

    def see(self, role, name):
        return eventually(
            lambda: next((node for node in find_all(self.application, role) if node.name == name), None),
            f"there is a {role} {name!r}",
        )

    def scroll_to(self, role, name):
        """Gives the keyboard to what may be out of sight."""
        nodes = find_all(self.application, role, showing=False)
        next(node for node in nodes if node.name == name).queryComponent().grabFocus()

    def press(self, role, name):
        self.act(role, name, "Press")

    def act(self, role, name, action):
        actions = self.see(role, name).queryAction()
        names = [actions.getName(index) for index in range(actions.nActions)]
        assert actions.doAction(names.index(action)), f"{action} on {role} {name!r} was refused"
