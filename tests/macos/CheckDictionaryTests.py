"""Plants faults in the script, in our list of words and in the reference: checkDictionary.py must find each.

    CheckDictionaryTests.py DECLARATIONS
"""

import copy
import sys
import types
import unittest

DECLARATIONS = sys.argv.pop(1)

import checkDictionary
import dictionary
from scriptTesting import SCRIPT

SOURCE = SCRIPT.read_text(encoding="utf-8")

# What is replaced everywhere in the script, what takes its place, and a part of the finding.
NAMES = [
    ("openCount", "zoomed", "'zoomed' is a word of Terminal"),
    ("openCount", "cleanCommands", None),
    ("ttyName", "tabs", "'tabs' is a word of Terminal"),
    ("place", "result", "'result' is a word of AppleScript"),
    ("rowOf", "date", "'date' is a word of AppleScript"),
    ("keyNumber", "keystroke", "'keystroke' is a word of SystemEvents"),
    ("commandText", "dialog", None),
    ("errorText", "clipboard", None),
    ("edgeList", "beep", "'beep' is a word of StandardAdditions"),
]
# Where a word is put into our list, and a part of the finding.
WORDS = [
    ("PROPERTIES", dictionary.TERMINAL, "tab", "device", "Terminal: no tab has 'device'"),
    ("PROPERTIES", dictionary.TERMINAL, "tab", "bounds", "Terminal: no tab has 'bounds'"),
    ("PROPERTIES", dictionary.TERMINAL, "window", "tty", "Terminal: no window has 'tty'"),
    ("PROPERTIES", dictionary.SYSTEM_EVENTS, "application", "UI enabled", "SystemEvents: no application has 'UI enabled'"),
]
COMMANDS = [
    (dictionary.TERMINAL, "run script", [], "Terminal: no command 'run script'"),
    (dictionary.TERMINAL, "do script", ["inside"], "'do script' has no parameter 'inside'"),
    (dictionary.TERMINAL, "close", ["asking"], "'close' has no parameter 'asking'"),
    (dictionary.SYSTEM_EVENTS, "press key", [], "SystemEvents: no command 'press key'"),
]
# What the reference loses: then what the script asks for is unknown.
LOST = [
    ("Terminal", "window", "miniaturized", "no window has 'miniaturized'"),
    ("Terminal", "window", "id", "no window has 'id'"),
    ("Terminal", "tab", "history", "no tab has 'history'"),
    ("Terminal", "tab", "custom title", "no tab has 'custom title'"),
    ("SystemEvents", "application", "ui elements enabled", "no application has 'UI elements enabled'"),
]


class CheckDictionaryTests(unittest.TestCase):
    def setUp(self):
        self.references = checkDictionary.references(DECLARATIONS)
        self.words = types.SimpleNamespace(
            PROPERTIES=copy.deepcopy(dictionary.PROPERTIES), COMMANDS=copy.deepcopy(dictionary.COMMANDS)
        )

    def assert_found(self, expected, source=SOURCE):
        findings, _, _ = checkDictionary.check(source, self.references, self.words)
        self.assertTrue(any(expected in finding for finding in findings), (expected, findings))

    def test_the_script_has_no_finding(self):
        findings, names, terms = checkDictionary.check(SOURCE, self.references, self.words)
        self.assertEqual(findings, [])
        self.assertGreater(names, 80)
        self.assertGreater(terms, 500)

    def test_every_name_that_is_a_word_is_found(self):
        for old, new, expected in NAMES:
            with self.subTest(new):
                self.assertTrue(old in SOURCE, "the fault cannot be planted any more")
                if expected:
                    self.assert_found(expected, SOURCE.replace(old, new))
                else:
                    # Two words of a dictionary written as one are a name like any other.
                    findings, _, _ = checkDictionary.check(SOURCE.replace(old, new), self.references, self.words)
                    self.assertEqual(findings, [])

    def test_every_word_that_an_application_does_not_have_is_found(self):
        for table, application, kind, word, expected in WORDS:
            with self.subTest(word):
                self.setUp()
                getattr(self.words, table)[application][kind][word] = dictionary.READ
                self.assert_found(expected)

    def test_every_command_that_an_application_does_not_have_is_found(self):
        for application, command, parameters, expected in COMMANDS:
            with self.subTest(command):
                self.setUp()
                self.words.COMMANDS[application][command] = parameters
                self.assert_found(expected)

    def test_every_word_that_the_reference_lacks_is_found(self):
        for name, kind, word, expected in LOST:
            with self.subTest(word):
                self.setUp()
                self.references[name].classes[kind].remove(word)
                self.assert_found(expected)
        self.setUp()
        del self.references["StandardAdditions"].commands["delay"]
        self.assert_found("no command 'delay'")


if __name__ == "__main__":
    unittest.main()
