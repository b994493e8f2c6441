"""scripts/check-docs.py finds what it is there for."""
import importlib.util
import pathlib
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SPEC = importlib.util.spec_from_file_location("check_docs", ROOT / "scripts" / "check-docs.py")
check_docs = importlib.util.module_from_spec(SPEC)
SPEC.loader.exec_module(check_docs)


class Links(unittest.TestCase):
    def problems(self, text):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            (root / "docs").mkdir()
            (root / "docs" / "other.md").write_text("# Two words, and `code`\n\n## Twice\n\n## Twice\n```\n# no heading\n```\n")
            (root / "docs" / "one.md").write_text(text)
            return check_docs.dead_links(root, ["docs/one.md"])

    def test_good_ones_pass(self):
        self.assertEqual(self.problems("# Here\n[a](other.md) [b](other.md#two-words-and-code) [c](#here) [d](other.md#twice-1)\n"
                                       "[e](https://example.org/x) [f](../docs/other.md)\n"), [])

    def test_dead_ones_are_named_with_their_line(self):
        self.assertEqual(self.problems("\n[a](none.md)"), ["docs/one.md:2: none.md leads nowhere"])
        self.assertEqual(self.problems("![a](x.png)"), ["docs/one.md:1: x.png leads nowhere"])
        self.assertEqual(self.problems("[a](other.md#no-heading)"),
                         ["docs/one.md:1: other.md#no-heading names no heading there"])
        self.assertEqual(len(self.problems("[a](other.md#twice-2)")), 1)

    def test_code_holds_no_links(self):
        self.assertEqual(self.problems("```\n[a](none.md)\n```\n`[a](none.md)`\n"), [])


class Blocks(unittest.TestCase):
    def problem(self, text):
        blocks = check_docs.blocks_of("x.md", text)
        self.assertEqual(len(blocks), 1)
        return check_docs.problem_of(blocks[0], "/usr/bin")

    def test_a_block_that_works_passes(self):
        self.assertIsNone(self.problem("<!-- run -->\n```sh\ntrue\necho $HOME >file\n```\n"))
        self.assertIsNone(self.problem("<!-- run: exit 3 -->\n```console\n$ exit 3\n```\n"))
        self.assertIsNone(self.problem("<!-- run -->\n```console\n$ echo $HOME; echo one two\n/home/me\none ...\n```\n"))

    def test_a_command_that_fails_is_found(self):
        self.assertIn("ends with 1", self.problem("<!-- run -->\n```sh\nfalse\ntrue\n```\n"))
        self.assertIn("ends with 0", self.problem("<!-- run: exit 1 -->\n```sh\ntrue\n```\n"))

    def test_output_that_does_not_come_is_found(self):
        self.assertIn("does not print this: two",
                      self.problem("<!-- run -->\n```console\n$ printf 'two\\none\\n'\none\ntwo\n```\n"))

    def test_a_mark_without_a_block_is_a_fault(self):
        with self.assertRaises(SystemExit):
            check_docs.blocks_of("x.md", "<!-- run -->\n\ntext\n")

    def test_unmarked_blocks_are_left_alone(self):
        self.assertEqual(check_docs.blocks_of("x.md", "```sh\nfalse\n```\n"), [])


if __name__ == "__main__":
    sys.dont_write_bytecode = True
    unittest.main()
