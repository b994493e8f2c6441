"""deploy.sh and checkBundle.py over a bundle made up here: DeploymentTests.py SOURCE_DIRECTORY"""

import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

PACKAGING = pathlib.Path(sys.argv.pop(1)) / "packaging" / "macos"
EXECUTE, DYLIB = 2, 6
LOAD, WEAK, RPATH = 0xC, 0x80000018, 0x8000001C


def image(kind, commands):
    """A Mach-O file that is nothing but load commands: pairs of a command and its text."""
    body = b""
    for command, text in commands:
        place = 24 if command != RPATH else 12
        content = text.encode() + b"\0"
        size = (place + len(content) + 7) // 8 * 8
        body += (struct.pack("<III", command, size, place).ljust(place, b"\0") + content).ljust(size, b"\0")
    return struct.pack("<IIIIIIII", 0xFEEDFACF, 0x0100000C, 0, kind, len(commands), len(body), 0, 0) + body


def universal(*parts):
    """Several images in one file, as the loader's header for that says it."""
    head, content = struct.pack(">II", 0xCAFEBABE, len(parts)), b""
    for part in parts:
        head += struct.pack(">IIIII", 0x0100000C, 0, 8 + 20 * len(parts) + len(content), len(part), 0)
        content += part
    return head + content


class BundleCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.app = self.folder / "Velmora.app"
        self.put("Info.plist", b"text")
        self.program("MacOS/Velmora")
        self.program("Helpers/velmora")

    def put(self, name, data):
        path = self.app / "Contents" / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)
        return path

    def program(self, name, *loads, searched="@executable_path/../Frameworks"):
        commands = [(LOAD, "/usr/lib/libSystem.B.dylib"), *((LOAD, load) for load in loads), (RPATH, searched)]
        return self.put(name, image(EXECUTE, commands))

    def library(self, name, *loads, command=LOAD):
        return self.put(name, image(DYLIB, [(command, load) for load in loads]))


class CheckBundleTests(BundleCase):
    def check(self):
        ended = subprocess.run([PACKAGING / "checkBundle.py", self.app], capture_output=True, text=True, check=False)
        return ended.returncode, ended.stdout.splitlines()

    def refused(self, *lines):
        self.assertEqual(self.check(), (1, list(lines)))

    def test_a_bundle_with_all_that_it_loads_passes(self):
        self.program("MacOS/Velmora", "@rpath/Qt.framework/Versions/A/Qt", "/System/Library/Frameworks/AppKit.framework/AppKit")
        self.program("Helpers/velmora", "@executable_path/../Frameworks/libicu.dylib")
        self.library("Frameworks/Qt.framework/Versions/A/Qt", "@rpath/libicu.dylib", "@loader_path/../../../libicu.dylib")
        self.library("Frameworks/libicu.dylib", "/usr/lib/libc++.1.dylib")
        self.assertEqual(self.check(), (0, ["4 files load nothing from outside of the bundle"]))

    def test_a_library_of_homebrew_is_refused(self):
        self.program("Helpers/velmora", "/opt/homebrew/lib/libicu.dylib")
        self.refused("Contents/Helpers/velmora loads /opt/homebrew/lib/libicu.dylib, which is not in the bundle")

    def test_a_library_that_was_forgotten_is_refused(self):
        self.program("MacOS/Velmora", "@rpath/libgone.dylib")
        self.refused("Contents/MacOS/Velmora loads @rpath/libgone.dylib, which is not in the bundle")

    def test_what_a_library_loads_counts_too(self):
        for command in (LOAD, WEAK):
            self.library("PlugIns/platforms/libcocoa.dylib", "@loader_path/libgone.dylib", command=command)
            self.refused("Contents/PlugIns/platforms/libcocoa.dylib loads @loader_path/libgone.dylib, which is not in the bundle")

    def test_every_processor_of_a_universal_file_counts(self):
        parts = [image(DYLIB, [(LOAD, "/usr/lib/libc++.1.dylib")]), image(DYLIB, [(LOAD, "/usr/local/lib/libpng.dylib")])]
        self.put("Frameworks/libboth.dylib", universal(*parts))
        self.refused("Contents/Frameworks/libboth.dylib loads /usr/local/lib/libpng.dylib, which is not in the bundle")

    def test_a_folder_outside_that_is_searched_is_refused(self):
        self.program("MacOS/Velmora", searched="/opt/homebrew/lib")
        self.refused("Contents/MacOS/Velmora searches /opt/homebrew/lib")

    def test_a_link_out_of_the_bundle_is_refused(self):
        self.program("MacOS/Velmora", "@rpath/liblink.dylib")
        outside = self.folder / "liblink.dylib"
        outside.write_bytes(image(DYLIB, []))
        (self.app / "Contents" / "Frameworks").mkdir()
        (self.app / "Contents" / "Frameworks" / "liblink.dylib").symlink_to(outside)
        self.refused("Contents/MacOS/Velmora loads @rpath/liblink.dylib, which is not in the bundle")

    def test_a_bundle_without_programs_is_none(self):
        for name in ("MacOS/Velmora", "Helpers/velmora"):
            (self.app / "Contents" / name).unlink()
        self.assertEqual(self.check(), (1, []))


class DeployTests(BundleCase):
    """With stand-ins for Apple's and Qt's tools that note what they are asked."""

    def tool(self, name, body=""):
        path = self.folder / "tools" / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(f'#!/bin/sh\necho "{name} $*" >>"{self.folder}/said"\n{body}\n')
        path.chmod(0o755)

    def deploy(self, *arguments):
        self.tool("macdeployqt")
        self.tool("ditto", 'cp -R "$1" "$2"')
        self.tool("install_name_tool")
        self.tool("otool", f'cat "{self.folder}/commands"')
        (self.folder / "commands").write_text(
            "Load command 20\n          cmd LC_RPATH\n      cmdsize 48\n         path @executable_path/../Frameworks (offset 12)\n"
            "Load command 21\n          cmd LC_RPATH\n      cmdsize 32\n         path /opt/my brew/lib (offset 12)\n"
        )
        environment = {"PATH": f"{self.folder}/tools:/usr/bin:/bin"}
        ended = subprocess.run([PACKAGING / "deploy.sh", self.app, *arguments], env=environment, capture_output=True, text=True, check=False)
        said = self.folder / "said"
        return ended, said.read_text().splitlines() if said.exists() else []

    def test_qt_is_found_for_every_program(self):
        self.program("Helpers/velmora-script-host")
        ended, said = self.deploy()
        self.assertEqual(ended.returncode, 0, ended.stdout + ended.stderr)
        (line,) = [line for line in said if line.startswith("macdeployqt")]
        self.assertTrue(line.startswith(f"macdeployqt {self.app} -qmldir="), line)
        for name in ("velmora", "velmora-watch", "velmora-script-host"):
            self.assertIn(f" -executable={self.app}/Contents/Helpers/{name}", line)
        self.assertNotIn("ditto", " ".join(said))

    def test_paths_of_the_building_mac_are_taken_out_of_each_program(self):
        _, said = self.deploy()
        removed = [line for line in said if line.startswith("install_name_tool")]
        self.assertEqual(removed, [f"install_name_tool -delete_rpath /opt/my brew/lib {self.app}/Contents/{name}" for name in ("MacOS/Velmora", "Helpers/velmora")])

    def test_sparkle_is_copied_before_its_loader_is_looked_at(self):
        framework = self.folder / "Sparkle" / "Sparkle.framework"
        framework.mkdir(parents=True)
        (framework / "Sparkle").write_bytes(image(DYLIB, []))
        ended, said = self.deploy(framework.parent)
        self.assertEqual(ended.returncode, 0, ended.stdout + ended.stderr)
        self.assertEqual([line.split()[0] for line in said[:2]], ["ditto", "macdeployqt"])
        self.assertTrue((self.app / "Contents" / "Frameworks" / "Sparkle.framework" / "Sparkle").exists())

    def test_what_is_still_outside_makes_it_fail(self):
        self.program("Helpers/velmora", "/opt/homebrew/lib/libicu.dylib")
        ended, _ = self.deploy()
        self.assertEqual(ended.returncode, 1)
        self.assertIn("which is not in the bundle", ended.stdout)

    def test_without_a_bundle_it_says_how_it_is_used(self):
        ended = subprocess.run([PACKAGING / "deploy.sh", self.folder], capture_output=True, text=True, check=False)
        self.assertEqual(ended.returncode, 2)
        self.assertIn("deploy.sh Velmora.app", ended.stderr)


if __name__ == "__main__":
    unittest.main()
