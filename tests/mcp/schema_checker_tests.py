"""Proves the checks of schema_tests.py: the published examples fit, and each planted fault is found and named."""

import json
import shlex
import sys
import unittest
from contextlib import closing

import helper_process
import schema_tests
from published_schema import MODERN_REVISION, SCHEMAS, PublishedSchema

TAMPERING = helper_process.pathlib.Path(__file__).with_name("tampering_helper.py")

# fault, revision, the check that must find it, and a word of its complaint
PLANTED = """
noise                        | 20241105 | lists_nine            | not JSON
second answer                | 20250618 | works_on_a_real       | second one
id of another kind           | 20241105 | lists_nine            | an answer to nothing
another JSON-RPC             | 20241105 | lists_nine            | '2.0' was expected
version of another kind      | 20250326 | agrees_on             | not of type 'string'
no capabilities              | 20241105 | agrees_on             | 'capabilities' is a required
nobody's version             | 20250618 | agrees_on             | 'version' is a required
no resultType                | 20260728 | lists_nine            | 'resultType' is a required
unheard-of resultType        | 20260728 | without_the_app       | resultType is done
no ttlMs                     | 20260728 | discover_names        | 'ttlMs' is a required
broken ttlMs                 | 20260728 | lists_nine            | 1.5 is not of type 'integer'
unheard-of cacheScope        | 20260728 | lists_nine            | 'shared' is not one of
no supportedVersions         | 20260728 | discover_names        | 'supportedVersions' is a required
member of a later revision   | 20250618 | lists_nine            | has no ['ttlMs']
nameless tool                | 20250326 | lists_nine            | 'name' is a required
tool too few                 | 20251125 | lists_nine            | Lists differ
hint too few                 | 20251125 | lists_nine            | not less than or equal
input that is no object      | 20241105 | lists_nine            | 'object' was expected
no JSON Schema for input     | 20250618 | lists_nine            | 'sting' is not valid
no JSON Schema for output    | 20260728 | lists_nine            | 7 is not valid
texts differ                 | 20251125 | without_the_app       | the text differ
wordless block               | 20241105 | without_the_app       | is not valid under any
unheard-of block             | 20251125 | without_the_app       | is not valid under any
link that an early client cannot know | 20250326 | without_the_app | is not valid under any
link that is no URI          | 20251125 | works_on_a_real       | is not valid under any
picture that is no base64    | 20251125 | works_on_a_real       | is not valid under any
another picture              | 20251125 | works_on_a_real       | the picture is the file's
isError contradicts          | 20250618 | without_the_app       | isError contradicts
payload of another kind      | 20251125 | works_on_a_real       | 'many' is not of type
payload too small            | 20251125 | works_on_a_real       | 'mcpState' is a required
date as a number             | 20251125 | works_on_a_real       | 1000.25
failure without its code     | 20260728 | without_the_app       | 'code' is a required
wordless error               | 20251125 | cannot_be_served      | 'message' is a required
error code as text           | 20241105 | cannot_be_served      | not of type 'integer'
another error code           | 20250618 | cannot_be_served      | -32000 != -32601
no supported versions        | 20260728 | unsupported_version   | 'supported' is a required
progress that stands still   | 20251125 | under_the_token       | Lists differ
progress for another         | 20251125 | under_the_token       | Items in the
progress for nobody          | 20251125 | without_a_token       | Lists differ
batch in pieces              | 20250326 | batches_are           | the answer to a batch
"""


def run_check(fault, revision, check):
    """The texts of the failures of a check of schema_tests.py over a helper with this fault."""
    case = getattr(schema_tests, f"Revision{revision}")
    [method] = [name for name in dir(case) if name.startswith("test_") and check in name]
    real = helper_process.PROGRAMS
    with closing(helper_process.Folder()) as folder:
        program = folder.path / "velmora"
        command = [sys.executable, str(TAMPERING), str(real / "velmora"), fault]
        program.write_text("#!/bin/sh\nexec " + shlex.join(command) + "\n")
        program.chmod(0o700)
        helper_process.PROGRAMS = folder.path
        try:
            result = unittest.TestResult()
            case(method).run(result)
        finally:
            helper_process.PROGRAMS = real
    if result.testsRun != 1:
        raise RuntimeError(f"{method} did not run")
    return [text for _, text in result.failures + result.errors]


class PublishedExamples(unittest.TestCase):
    def test_each_fits_the_definition_that_it_is_an_example_of(self):
        schema = PublishedSchema(MODERN_REVISION)
        files = sorted(SCHEMAS.glob(f"examples-{MODERN_REVISION}/*/*.json"))
        self.assertGreater(len(files), 20)
        for file in files:
            with self.subTest(file.parent.name, file=file.name):
                schema.expect(file.parent.name, json.loads(file.read_text()))


class PlantedFaults(unittest.TestCase):
    def test_without_a_fault_every_check_passes(self):
        for revision, check in sorted({(row[1], row[2]) for row in rows()}):
            with self.subTest(check, revision=revision):
                self.assertEqual(run_check("none", revision, check), [])

    def test_each_fault_is_found_and_named(self):
        for fault, revision, check, complaint in rows():
            with self.subTest(fault):
                complaints = run_check(fault, revision, check)
                self.assertTrue(complaints, "nobody noticed")
                self.assertIn(complaint, "\n".join(complaints))


def rows():
    return [[cell.strip() for cell in line.split("|")] for line in PLANTED.strip().splitlines()]


if __name__ == "__main__":
    unittest.main()
