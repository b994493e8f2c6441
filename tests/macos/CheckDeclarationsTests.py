"""Plants faults in the declarations and in a link: the macOS check must find each.

    CheckDeclarationsTests.py TYPESCRIPT_FOLDER PASCAL_PACKAGES
"""

import pathlib
import shutil
import sys
import tempfile
import unittest

PASCAL, TYPESCRIPT = sys.argv.pop(2), sys.argv.pop(1)

import checkDeclarations
import linkProgram
from references import Pascal, TypeScript

DECLARATIONS = pathlib.Path(__file__).parent / "declarations"

# The header, what is replaced in it, what takes its place, and a part of the finding.
FAULTS = [
    ("Foundation", "insertDescriptor:(", "addDescriptor:(", "-[NSAppleEventDescriptor addDescriptor:atIndex:]"),
    ("Foundation", "- (int32_t)int32Value", "- (int32_t)int32value", "-[NSAppleEventDescriptor int32value]"),
    ("Foundation", "- (NSAppleEventDescriptor*)descriptorAtIndex", "+ (NSAppleEventDescriptor*)descriptorAtIndex", "+[NSAppleEventDescriptor descriptorAtIndex:]"),
    ("Foundation", "+ (NSAppleEventDescriptor*)listDescriptor", "- (NSAppleEventDescriptor*)listDescriptor", "-[NSAppleEventDescriptor listDescriptor]"),
    ("Foundation", "- (instancetype)initWithSource:(NSString*)source;", "- (instancetype)initWithSource:(NSString*)source error:(id*)error;", "-[NSAppleScript initWithSource:error:]"),
    ("Foundation", "- (NSString*)resourcePath;", "- (NSString*)resourcesPath;", "-[NSBundle resourcesPath]"),
    ("Foundation", "@interface NSLocale", "@interface NSLocales", "NSLocales: no such class"),
    ("Foundation", "NSUTF8StringEncoding = 4", "NSUTF8StringEncoding = 8", "NSUTF8StringEncoding: is"),
    ("Foundation", "kAutoGenerateReturnID = -1", "kAutoGenerateReturnID = 1", "kAutoGenerateReturnID: is"),
    ("Foundation", "NSAppleScriptErrorNumber;", "NSAppleScriptErrorCode;", "NSAppleScriptErrorCode: no such constant"),
    ("Foundation", "Class NSClassFromString(NSString* aClassName);", "Class NSClassFromString(NSString* aClassName, int flags);", "NSClassFromString: takes 1"),
    ("ServiceManagement", "SMAppServiceStatusEnabled = 1", "SMAppServiceStatusEnabled = 2", "SMAppServiceStatusEnabled: is"),
    ("ServiceManagement", "mainAppService", "mainApp", "+[SMAppService mainApp]"),
    ("ApplicationServices", "AXIsProcessTrustedWithOptions(", "AXIsTrustedProcess(", "AXIsTrustedProcess: takes None"),
    ("CoreGraphics", "CGRequestScreenCaptureAccess(void)", "CGRequestScreenCaptureAccess(int display)", "CGRequestScreenCaptureAccess: takes 0"),
    ("AppKit", "orderFrontStandardAboutPanel:", "orderFrontAboutPanel:", "-[NSApplication orderFrontAboutPanel:]"),
]


class CheckDeclarationsTests(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.typescript, cls.pascal = TypeScript(TYPESCRIPT), Pascal(PASCAL)

    def findings(self, folder, sources=()):
        declarations = checkDeclarations.Declarations(folder)
        return checkDeclarations.check(declarations, sources, self.typescript, self.pascal)[0]

    def test_every_planted_fault_is_found(self):
        for framework, old, new, expected in FAULTS:
            with self.subTest(new), tempfile.TemporaryDirectory() as folder:
                planted = pathlib.Path(folder) / "declarations"
                shutil.copytree(DECLARATIONS, planted)
                header = planted / framework / f"{framework}.h"
                text = header.read_text(encoding="utf-8")
                self.assertIn(old, text, "the fault cannot be planted any more")
                header.write_text(text.replace(old, new, 1), encoding="utf-8")
                findings = self.findings(planted)
                self.assertTrue(any(expected in finding for finding in findings), findings)

    def test_a_wrong_literal_in_a_source_is_found(self):
        right = "constexpr AEKeyword subroutineName = 'snam';  // keyASSubroutineName"
        self.assertEqual(self.findings(DECLARATIONS, [right]), [])
        self.assertEqual(len(self.findings(DECLARATIONS, [right.replace("snam", "snan")])), 1)
        self.assertEqual(len(self.findings(DECLARATIONS, [right.replace("SubroutineName", "Routine")])), 1)

    def test_a_symbol_that_nobody_has_is_found(self):
        declared = linkProgram.declared_symbols(DECLARATIONS)
        symbols = {"_OBJC_CLASS_$_NSAppleScript", "_objc_msgSend", "__ZNSt3__16threadD1Ev", "_read", "_u_strlen_72", "_initscr"}
        ours = {"__ZN7velmora18systemScriptEngineEv", "_OBJC_CLASS_$_NSAlert", "_objc_nothing", "_u_nothing_72"}
        libraries = linkProgram.classify(symbols | ours, declared, {"_read"}, {"_u_strlen_72"}, {"_initscr"})
        self.assertEqual(libraries.pop("unknown"), ours)
        self.assertEqual(sorted(libraries), ["Foundation", "c++", "icu", "ncurses", "objc", "system"])


if __name__ == "__main__":
    unittest.main()
