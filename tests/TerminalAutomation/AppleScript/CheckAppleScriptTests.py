"""Plants faults in TerminalBridge.applescript: scripts/checkAppleScript.py must find each, and nothing without one.

    CheckAppleScriptTests.py SOURCE_DIRECTORY
"""

import pathlib
import sys
import unittest

ROOT = pathlib.Path(sys.argv.pop(1))
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))
import checkAppleScript  # noqa: E402  (the path comes first)

FOLDER = ROOT / "TerminalAutomation" / "AppleScript"
SCRIPT = (FOLDER / "TerminalBridge.applescript").read_text(encoding="utf-8")
TABLE = (FOLDER / "ScriptHandlers.h").read_text(encoding="utf-8")

# What is wrong, the text that is replaced (once), what takes its place, and a part of the finding.
FAULTS = [
    ("a block that is not closed", "	end repeat\n	return {true, openCount}", "	return {true, openCount}", "where 'end repeat'"),
    ("a block closed as another kind", "		return 0\n	end try", "		return 0\n	end if", "'end if' where 'end try'"),
    ("a block closed without its name", "		return 0\n	end try", "		return 0\n	end", "'end' where 'end try'"),
    ("a handler closed under another name", "end focusSession", "end focusSessions", "where 'end focusSession'"),
    ("a handler closed in another case", "end focusSession", "end focussession", "where 'end focusSession'"),
    ("a handler that is not closed", "end focusSession\n", "", "begins inside the block"),
    ("an end too many", "end focusSession", "end focusSession\nend focusSession", "closes nothing"),
    ("a text that is not closed", '"The tab is gone."', '"The tab is gone.', "a text is not closed"),
    ("a bracket that is not closed", "return {true, openCount}", "return {true, openCount", "'{' is not closed"),
    ("brackets that do not match", "return {true, openCount}", "return {true, openCount)", "closes nothing"),
    ("a comment that is not closed", "-- Below, what", "(* Below, what", "comment (* is not closed"),
    ("a continuation into nothing", "	return {true, openCount}", "	return ¬\n\n	{true, openCount}", "ends in nothing"),
    ("text after a continuation", "	return {true, openCount}", "	return ¬ {true,\n	openCount}", "follows the continuation"),
    ("a stray then", "	set openCount to 0", "	set openCount to 0 then", "'then' without 'if'"),
    ("an else without its if", "	set openCount to 0", "	else", "outside 'if'"),
    ("a missing handler", "closeWindow", "closeOneWindow", "handler 'closeWindow' is missing"),
    ("a handler in another case", "captureBounds(", "capturebounds(", "handler 'captureBounds' is missing"),
    ("an argument too few", "focusSession(ttyName, windowNumber)", "focusSession(ttyName)", "the table says 2"),
    ("an argument too many", "on listSessions()", "on listSessions(everything)", "the table says 0"),
    ("names that differ in case only", "on tabCount(", "on TTYOF(", "in lower case"),
    ("a call with too few arguments", "my isSelected(windowNumber, tabNumber)\n	set titleText", "my isSelected(windowNumber)\n	set titleText", "takes 2 arguments, not 1"),
    ("a call of no handler", "my settledRow(openRow)", "my setledRow(openRow)", "calls no handler"),
    ("a call without my", "return my settledRow(openRow)", "return settledRow(openRow)", "called without 'my'"),
    ("a handler that nobody calls", "on closeWindow(", "-- Nothing.\non idle_()\nend idle_\n\n-- Closes.\non closeWindow(", "is never called"),
    ("a handler without a comment", "-- is sometimes old, and the user sees what is in front.\n", "\n", "'focusSession' has no comment"),
    ("a bare try", "	on error errorText number errorNumber\n		my passOn(errorText, errorNumber)\n		return 0\n", "", "a bare 'try'"),
    ("a try that swallows", "		my passOn(errorText, errorNumber)\n		return 0\n", "		return 0\n", "does not pass its error on"),
    ("a try without the number", "	on error errorText number errorNumber\n		my passOn(errorText, errorNumber)\n		return 0\n", "	on error errorText\n		my passOn(errorText, -1)\n		return 0\n", "does not pass its error on"),
    ("a try that passes on too late", "		my passOn(errorText, errorNumber)\n		return 0\n", "		set openCount to 0\n		my passOn(errorText, errorNumber)\n		return 0\n", "does not pass its error on"),
    ("an event without a time-out", "	with timeout of 150 seconds\n		tell application id \"com.apple.systemevents\" to set keysAllowed to UI elements enabled\n	end timeout", "	tell application id \"com.apple.systemevents\" to set keysAllowed to UI elements enabled", "without 'with timeout'"),
    ("a time-out around a handler", "-- Whether Terminal runs.", "with timeout of 5 seconds\n-- Whether Terminal runs.", "begins inside the block"),
    ("an unknown target", "tell application id \"com.apple.systemevents\" to key", "tell application \"System Events\" to key", "an unknown target"),
    ("a delay inside tell", "			activate\n", "			delay 1\n			activate\n", "stay outside 'tell'"),
    ("an own handler inside tell", "			activate\n", "			my requireTerminal()\n			activate\n", "stay outside 'tell'"),
    ("activate before the end", "			activate\n", "			activate\n			set index of window id windowNumber to 1\n", "'activate' comes last"),
    ("a variable that Terminal knows", "set openCount to 0", "set contents to 0", "is a word of the scripted"),
    ("a loop variable that Terminal knows", "with pressNumber from", "with index from", "is a word of the scripted"),
    ("an argument that Terminal knows", "on hasEnded(windowNumber,", "on hasEnded(window,", "is a word of the scripted"),
    ("an error named like a word of Terminal's", "	on error errorText number errorNumber\n		my passOn(errorText, errorNumber)\n		return 0", "	on error title number errorNumber\n		my passOn(title, errorNumber)\n		return 0", "is a word of the scripted"),
    ("an empty listing", "then return {{}}", "then return {}", "returns an empty list"),
    ("a search through windows", "set windowNumbers to id of every window", "set windowNumbers to id of every window whose visible is true", "'whose' fails"),
    ("a loop over references", "	repeat with place from 1 to count of programNames", "	repeat with place in programNames", "goes through references"),
    ("a key pressed unseen", "if not my isInFront(windowNumber, tabNumber) then\n", "if pressNumber < 0 then\n", "without a look at what is in front"),
    ("a shell", "	delay 0.3\n", "	do shell script \"sleep 1\"\n", "runs a shell"),
    ("a statement outside the handlers", "-- Below, what", "set counter to 0\n-- Below, what", "outside every handler"),
]


class CheckAppleScriptTests(unittest.TestCase):
    def test_the_script_has_no_finding(self):
        self.assertEqual(checkAppleScript.check(SCRIPT, TABLE), [])

    def test_every_planted_fault_is_found(self):
        for fault, old, new, expected in FAULTS:
            with self.subTest(fault):
                self.assertTrue(old in SCRIPT, "the fault cannot be planted any more")
                findings = checkAppleScript.check(SCRIPT.replace(old, new, 1), TABLE)
                sentences = [sentence for _, sentence in findings]
                self.assertTrue(any(expected in sentence for sentence in sentences), sentences)

    def test_a_finding_names_its_line(self):
        planted = SCRIPT.replace("set openCount to 0", "set contents to 0", 1)
        line = SCRIPT[: SCRIPT.index("set openCount to 0")].count("\n") + 1
        self.assertIn(line, [number for number, _ in checkAppleScript.check(planted, TABLE)])

    def test_a_continued_line_is_one_line(self):
        continued = SCRIPT.replace("return {true, openCount}", "return {true, ¬\n		openCount}", 1)
        self.assertEqual(checkAppleScript.check(continued, TABLE), [])

    def test_a_comment_may_hold_anything(self):
        commented = SCRIPT.replace("on closeWindow(", '(* end "if ( *) on closeWindow(', 1)
        self.assertEqual(checkAppleScript.check(commented, TABLE), [])

    def test_an_empty_table_is_a_finding(self):
        self.assertIn((0, "the handler table is empty"), checkAppleScript.check(SCRIPT, ""))

    def test_a_handler_of_the_table_alone_is_a_finding(self):
        more = TABLE + 'inline constexpr ScriptHandler<1> ring{"ring"};'
        self.assertIn((0, "the handler 'ring' is missing"), checkAppleScript.check(SCRIPT, more))


if __name__ == "__main__":
    unittest.main()
