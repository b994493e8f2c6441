"""A desktop with Terminal and System Events, as documentation and public measurements describe them.

Each rule has its source beside it, so that the first Mac can confirm or refute it: packaging/macos/record.sh plays the
scenarios of contract/ there and compares. "Dictionary" is Terminal's own (Terminal.sdef). Time is the desktop's own and
moves with events and delays only.
"""

from dictionary import SYSTEM_EVENTS, TERMINAL
from shell import Shell
from values import MISSING, NO_SUCH_OBJECT, Reference, ScriptError

NOT_PERMITTED = -1743
TIMED_OUT = -1712
HANDLER_FAILED = -10000
INVALID_INDEX = -1719
NO_KEYSTROKES = 1002
OTHER = "some other application"


class Tab:
    """A tab whose text and programs stay as they are, unless `shell` runs in it. `busy` is what Terminal says."""

    def __init__(self, tty, programs=("login", "-zsh"), busy=False, contents="", history="", title=MISSING, selected=True):
        self.tty, self.programs, self.busy = tty, list(programs), busy
        self.contents, self.history, self.title, self.selected = contents, history, title, selected
        self.typed = []
        self.shell = None
        self.tty_from = 0


class Window:
    """A closed or windowless ghost has no tabs and is not visible."""

    def __init__(self, number, tabs=(), name="", bounds=(10, 20, 610, 420), miniaturized=False, visible=True):
        self.id, self.tabs, self.name, self.bounds = number, list(tabs), name, list(bounds)
        self.miniaturized, self.visible = miniaturized, visible


class Desktop:
    """What the script meets. `before_event(desktop, verb, arguments)` may change it or raise a ScriptError; `events` are
    those sent, as (application, verb, arguments)."""

    def __init__(self, windows=(), running=True):
        self.windows, self.running = list(windows), running
        self.now = 0.0
        self.front = OTHER
        self.events, self.keys = [], []
        self.before_event = None
        # The user's answer to the consent question, and after how long it is given.
        self.consent = {TERMINAL: True, SYSTEM_EVENTS: True}
        self.consent_takes = 0
        self.may_press_keys = True
        # An application that answers nothing any more.
        self.hanging = None
        self.event_takes = 0.002
        # LaunchServices does not see a running application now and then, for 6 to 18 ms at a time (measured over
        # 41,000 samples in 2026 by a project that watches another application).
        self.unseen_until = 0
        # Windows that Terminal brings back at its start (macOS's Resume).
        self.restored = []
        self.start_takes = 0.3
        self.starts_at = None
        self.next_window, self.next_tty = 1000, 100
        self.new_tty_takes = 0.0
        self.new_programs = ((0, ["login"], False), (0.5, ["login", "-zsh"], False))
        self.closing_asks = False
        self.closed_keeps_tab = False
        # How long the window server takes to bring a window to the front: 0.3 to 0.5 s, and until then Terminal answers
        # with the old order; two of five requests after a click were lost (JayantDevkar/claude-code-karma #92).
        self.raising_takes = 0.3
        self.lost_raises = 0
        # What moves a window: its index, "frontmost" being ignored (claude-code-karma #87), or "frontmost"
        # (minchenlee/c9watch #109). The measurements contradict each other.
        self.raised_by = "index"
        self.asked_to_front = None
        self.raising = []  # (when, window or None)

    # What the system answers ------------------------------------------------------------------------------------------

    def sleep(self, seconds):
        self.now += seconds
        self.settle()

    def settle(self):
        """Lets happen what time has brought."""
        if self.starts_at is not None and self.now >= self.starts_at:
            self.running, self.starts_at = True, None
            self.windows.extend(self.restored)
        while self.raising and self.raising[0][0] <= self.now:
            self.come_to_front(self.raising.pop(0)[1])

    def come_to_front(self, window):
        self.front = TERMINAL
        if window in self.windows:
            self.windows.remove(window)
            self.windows.insert(0, window)

    def is_running(self, application):
        """Answered by the system without an event (Language Guide, "running")."""
        self.settle()
        if self.now < self.unseen_until:
            return False
        return self.running if application == TERMINAL else True

    def is_frontmost(self, application):
        self.settle()
        return self.front == application

    # Events -----------------------------------------------------------------------------------------------------------

    def event(self, application, seconds, verb, *arguments):
        self.sleep(self.event_takes)
        self.events.append((application, verb, arguments))
        if self.before_event:
            self.before_event(self, verb, arguments)
        if application == TERMINAL and verb == "launch":
            self.hang(application, seconds)
            return self.launch()
        if application == TERMINAL and not self.running:
            # An event to an application that does not run starts it (Language Guide, "tell").
            raise AssertionError(f"this would start Terminal: {verb} {arguments}")
        self.ask_consent(application, seconds)
        self.hang(application, seconds)
        return VERBS[application, verb](self, *arguments)

    def hang(self, application, seconds):
        """An event that gets no answer ends with -1712 (Language Guide, "with timeout")."""
        if self.hanging == application:
            self.sleep(seconds)
            raise ScriptError(TIMED_OUT, "AppleEvent timed out.")

    def ask_consent(self, application, seconds):
        """The question goes away when the event that raised it times out (T0mSIlver/localvoxtral #183). A refusal is -1743
        (Apple, "errAEEventNotPermitted")."""
        if self.consent[application] is None:
            self.sleep(min(seconds, self.consent_takes))
            if self.consent_takes > seconds:
                raise ScriptError(TIMED_OUT, "AppleEvent timed out.")
            self.consent[application] = True
        if not self.consent[application]:
            raise ScriptError(NOT_PERMITTED, "Not authorized to send Apple events.")

    def launch(self):
        """Starts an application without what it does at its start, such as a new window; a running one stays as it is
        (Language Guide, "launch")."""
        if not self.running and self.starts_at is None and self.start_takes is not None:
            self.starts_at = self.now + self.start_takes
        return MISSING

    # Objects ----------------------------------------------------------------------------------------------------------

    def window(self, reference):
        for window in self.windows:
            if window.id == reference.key:
                return window
        raise ScriptError(NO_SUCH_OBJECT, f"Can't get window id {reference.key}.")

    def tab(self, reference):
        """Tabs of a window without any are an error -10000, also their number (wxtsky/CodeIsland #294, macOS 14.1)."""
        tabs = self.tabs_of(reference.owner)
        if not 1 <= reference.key <= len(tabs):
            raise ScriptError(INVALID_INDEX, "Invalid index.")
        return tabs[reference.key - 1]

    def tabs_of(self, reference):
        tabs = self.window(reference).tabs
        if not tabs:
            raise ScriptError(HANDLER_FAILED, "AppleEvent handler failed.")
        return tabs

    def front_window(self):
        return next((window for window in self.windows if window.visible and not window.miniaturized), None)

    # Terminal's verbs -------------------------------------------------------------------------------------------------

    def get(self, name, reference):
        if reference.kind == "every window":
            # Read at once; through references this fails on macOS 15 (njerschow/Command #3). From front to back
            # (Dictionary, "index").
            return [window.id for window in self.windows]
        if reference.kind == "window":
            return self.window_property(self.window(reference), name)
        return self.tab_property(self.tab(reference), name)

    def window_property(self, window, name):
        if name == "index":
            return self.windows.index(window) + 1
        if name == "frontmost":
            return window is self.front_window()
        if name == "bounds":
            return list(window.bounds)
        return getattr(window, name)

    def tab_property(self, tab, name):
        if name == "tty":
            # A new tab has none at first (people wait 0.25 to 1 s for it).
            return tab.tty if self.now >= tab.tty_from else MISSING
        if name == "custom title":
            return tab.title
        if name == "processes":
            # Empty once the shell has ended; others test just that. For over a second after its start a tab also has
            # what the start-up files run (measured on macOS 26: login, -zsh, ssh-add).
            return tab.shell.programs(self.now) if tab.shell else list(tab.programs)
        if tab.shell and name == "busy":
            return tab.shell.busy(self.now)
        if tab.shell and name in ("contents", "history"):
            return getattr(tab.shell, name)()
        return getattr(tab, name)

    def put(self, name, reference, value):
        if reference.kind == "tab":
            assert name == "selected", name
            chosen = self.tab(reference)
            for tab in self.tabs_of(reference.owner) if value else []:
                tab.selected = tab is chosen
            return MISSING
        window = self.window(reference)
        if name == "miniaturized":
            window.miniaturized = value
        elif name == self.raised_by:
            assert value == {"index": 1, "frontmost": True}[name], (name, value)
            self.asked_to_front = window
        return MISSING

    def activate(self):
        """Last, after the window was chosen: before, Terminal shows its old front window (c9watch #109)."""
        window, self.asked_to_front = self.asked_to_front, None
        if self.lost_raises:
            self.lost_raises -= 1
        else:
            self.raising.append((self.now + self.raising_takes, window))
        return MISSING

    def count(self, kind, reference):
        return len(self.tabs_of(reference))

    def do_script(self, text, where):
        """Without a place a new window of one tab; the answer is its tab, as "tab 1 of window id N" (Dictionary; MonoDevelop's
        MacExternalConsoleProcess). In a tab it types the text and Return to whatever reads there."""
        if where is None:
            self.next_window += 1
            self.next_tty += 1
            tab = Tab(f"/dev/ttys{self.next_tty:03}")
            tab.tty_from = self.now + self.new_tty_takes
            tab.shell = Shell(self.now, self.new_programs)
            self.windows.insert(0, Window(self.next_window, [tab], "new"))
            where = Reference("tab", 1, Reference("window", self.next_window))
            if not text:
                return where
        tab = self.tab(where)
        tab.typed.append(text)
        if tab.shell:
            for line in text.split("\n"):
                tab.shell.submit(line, self.now)
        return where

    def close(self, reference):
        """A closed window stays in the list and is not visible (measured on macOS 26). Whether it keeps its tab is not
        known; windows without any are (CodeIsland #294). Terminal asks first when a program runs in it."""
        window = self.window(reference)
        tab = window.tabs[0] if window.tabs else None
        if self.closing_asks or (tab and tab.shell and tab.shell.runs(self.now)):
            return MISSING
        window.visible = False
        if not self.closed_keeps_tab:
            window.tabs, window.name = [], ""
        self.windows.remove(window)
        self.windows.append(window)
        return MISSING

    # System Events' verbs ---------------------------------------------------------------------------------------------

    def keys_allowed(self, name, reference):
        return self.may_press_keys

    def key_code(self, number):
        """Goes to whatever is in front. Without the accessibility permission it is error 1002."""
        if not self.may_press_keys:
            raise ScriptError(NO_KEYSTROKES, "Not allowed to send keystrokes.")
        window = self.front_window() if self.front == TERMINAL else None
        tab = next((tab for tab in window.tabs if tab.selected), None) if window else None
        self.keys.append((number, tab.tty if tab else None))
        if tab and tab.shell:
            tab.shell.press(number, self.now)
        return MISSING


VERBS = {
    (TERMINAL, "get"): Desktop.get,
    (TERMINAL, "set"): Desktop.put,
    (TERMINAL, "count"): Desktop.count,
    (TERMINAL, "do script"): Desktop.do_script,
    (TERMINAL, "close"): Desktop.close,
    (TERMINAL, "activate"): Desktop.activate,
    (SYSTEM_EVENTS, "get"): Desktop.keys_allowed,
    (SYSTEM_EVENTS, "key code"): Desktop.key_code,
}
