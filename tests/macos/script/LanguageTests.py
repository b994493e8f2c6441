"""The interpreter itself: what it knows works as the Language Guide says, and what it does not know is an error."""

import unittest

import interpreter
import syntax
from desktop import Desktop, Tab, Window
from values import MISSING, ScriptError, source_form


def run(*lines, desktop=None, arguments=()):
    parameters = ", ".join(f"argument{place}" for place in range(1, len(arguments) + 1))
    source = "\n".join([f"on main({parameters})", *(f"\t{line}" for line in lines), "end main"])
    return interpreter.load(source, desktop or Desktop()).call("main", *arguments)


def value(expression, *arguments):
    return run(f"return {expression}", arguments=arguments)


class ValueTests(unittest.TestCase):
    def test_texts_are_equal_in_whatever_case(self):
        self.assertIs(value('"Zsh" is "zsh"'), True)
        self.assertIs(value('{"sh", "BASH"} contains "bash"'), True)

    def test_values_of_different_kinds_are_never_equal(self):
        for expression in ('1 is "1"', "0 is false", "missing value is false", '{} is ""'):
            self.assertIs(value(expression), False, expression)

    def test_a_list_contains_a_run_of_items(self):
        self.assertIs(value("{1, 2, 3} contains {2, 3}"), True)
        self.assertIs(value("{1, 2, 3} contains {1, 3}"), False)
        self.assertIs(value("{1, 2} does not contain 3"), True)

    def test_items_are_counted_from_one_and_from_the_end(self):
        self.assertEqual(value("item 1 of {7, 8}"), 7)
        self.assertEqual(value("item -1 of {7, 8}"), 8)
        for outside in (0, 3, -3):
            with self.assertRaises(ScriptError) as caught:
                value(f"item {outside} of {{7, 8}}")
            self.assertEqual(caught.exception.number, -1728)

    def test_a_range_of_text_keeps_composed_characters_whole(self):
        self.assertEqual(value("text -2 thru -1 of argument1", "ae\u0301x"), "e\u0301x")
        self.assertEqual(value("length of argument1", "e\u0301"), 1)

    def test_paragraphs_end_at_every_kind_of_line_end(self):
        self.assertEqual(value("paragraphs of argument1", "a\nb\r\nc\rd"), ["a", "b", "c", "d"])
        self.assertEqual(value("text from paragraph 1 to paragraph 2 of argument1", "a\r\nb\nc"), "a\r\nb")

    def test_only_a_boolean_decides(self):
        for what in ("1", '"true"', "missing value", "{}"):
            with self.assertRaises(ScriptError) as caught:
                run(f"if {what} then return 1")
            self.assertEqual(caught.exception.number, -1700)

    def test_missing_value_has_no_text(self):
        with self.assertRaises(ScriptError) as caught:
            value("missing value as text")
        self.assertEqual(caught.exception.number, -1700)

    def test_values_print_as_osascript_prints_them(self):
        self.assertEqual(source_form([True, 2, 'a"b\n', MISSING, []]), '{true, 2, "a\\"b\\n", missing value, {}}')


class OperatorTests(unittest.TestCase):
    def test_operators_bind_as_in_the_guides_table(self):
        self.assertEqual(value('"a" & 1 + 2'), "a3")
        self.assertEqual(value("7 - 2 - 1"), 4)
        self.assertIs(value("not 1 is 2"), True)
        self.assertIs(value("true or false and false"), True)
        self.assertIs(value('1 + 1 as text is "2"'), True)

    def test_and_and_or_look_right_only_when_it_matters(self):
        self.assertIs(value("false and unknown"), False)
        self.assertIs(value("true or unknown"), True)
        with self.assertRaises(ScriptError) as caught:
            value("true and unknown")
        self.assertEqual(caught.exception.number, -2753)


class StatementTests(unittest.TestCase):
    def test_an_error_is_caught_with_its_text_and_number(self):
        caught = run("try", 'error "no" number 12', "on error what number which", "return {what, which}", "end try")
        self.assertEqual(caught, ["no", 12])

    def test_a_list_is_shared_by_its_names(self):
        self.assertEqual(run("set one to {}", "set two to one", "set end of two to 5", "return one"), [5])

    def test_a_loop_counts_and_can_be_left(self):
        lines = ["set sum to 0", "repeat with n from 1 to 9", "if n > 3 then exit repeat", "set sum to sum + n", "end repeat"]
        self.assertEqual(run(*lines, "return sum"), 6)

    def test_a_handler_without_return_gives_missing_value(self):
        self.assertIs(run("set x to 1"), MISSING)

    def test_statements_outside_of_handlers_are_the_handler_run(self):
        source = "on twice(n)\n\treturn n + n\nend twice\nset x to my twice(4)\nreturn x"
        self.assertEqual(interpreter.load(source, Desktop()).call("run"), 8)

    def test_a_loop_that_does_not_end_is_noticed(self):
        with self.assertRaises(interpreter.DoesNotEnd):
            run("repeat while true", "end repeat")

    def test_a_time_out_ends_with_its_block(self):
        desktop = Desktop([Window(1, [Tab("/dev/ttys001")])], running=True)
        desktop.hanging = "com.apple.Terminal"
        tell = 'tell application id "com.apple.Terminal" to set x to id of every window'
        caught = ["try", "with timeout of 5 seconds", tell, "end timeout", "on error what number which", "end try"]
        with self.assertRaises(ScriptError):
            run(*caught, tell, desktop=desktop)
        self.assertAlmostEqual(desktop.now, 125, delta=0.1)


class NotUnderstoodTests(unittest.TestCase):
    def assert_not_understood(self, *lines):
        with self.assertRaises(syntax.NotUnderstood):
            run(*lines)

    def test_what_is_not_known_is_an_error(self):
        for line in ("beep", "set x to 1 + ", "return first item of {1}", "return 5 as real", 'return "a" "b"'):
            self.assert_not_understood(line)

    def test_a_handler_is_called_with_my(self):
        self.assert_not_understood("return main()")

    def test_a_word_of_terminal_names_nothing_inside_tell(self):
        self.assert_not_understood('tell application id "com.apple.Terminal" to set busy to 1')

    def test_a_property_belongs_to_its_class(self):
        for wrong in ("tty of window id 1", "bounds of tab 1 of window id 1", "busy of every window"):
            self.assert_not_understood(f'tell application id "com.apple.Terminal" to set x to {wrong}')

    def test_what_can_only_be_read_is_not_set(self):
        self.assert_not_understood('tell application id "com.apple.Terminal" to set tty of tab 1 of window id 1 to "x"')

    def test_an_unknown_application_is_an_error(self):
        self.assert_not_understood('tell application id "com.example.Other" to activate')

    def test_every_line_of_a_block_is_read_even_when_it_never_runs(self):
        self.assert_not_understood("if false then", "beep", "end if")


class DesktopTests(unittest.TestCase):
    def test_an_event_to_a_terminal_that_does_not_run_would_start_it(self):
        with self.assertRaisesRegex(AssertionError, "would start Terminal"):
            run('tell application id "com.apple.Terminal" to activate', desktop=Desktop(running=False))


if __name__ == "__main__":
    unittest.main()
