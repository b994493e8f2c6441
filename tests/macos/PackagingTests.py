"""What of packaging/macos can be checked anywhere: PackagingTests.py SOURCE_DIRECTORY"""

import pathlib
import plistlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(sys.argv.pop(1))
PACKAGING = ROOT / "packaging" / "macos"


def plist(name, **values):
    values.setdefault("CMAKE_OSX_DEPLOYMENT_TARGET", "13.3")
    text = (PACKAGING / name).read_text(encoding="utf-8")
    return plistlib.loads(re.sub(r"@(\w+)@", lambda match: values[match[1]], text).encode())


class PackagingTests(unittest.TestCase):
    def test_the_bundle_identifier_names_the_socket_directory_too(self):
        identifier = plist("Info.plist.in", PROJECT_VERSION="1.2", VELMORA_SPARKLE_PLIST="")["CFBundleIdentifier"]
        endpoint = (ROOT / "LocalControl" / "UnixSocketEndpoint.h").read_text(encoding="utf-8")
        endpoint += (ROOT / "LocalControl" / "UnixSocketEndpoint.cpp").read_text(encoding="utf-8")
        self.assertIn(f'"{identifier}"', endpoint)

    def test_the_version_is_the_projects(self):
        info = plist("Info.plist.in", PROJECT_VERSION="1.2.3", VELMORA_SPARKLE_PLIST="")
        self.assertEqual((info["CFBundleShortVersionString"], info["CFBundleVersion"]), ("1.2.3", "1.2.3"))
        self.assertEqual(plist("TerminalAutomation-Info.plist.in", PROJECT_VERSION="1.2")["CFBundleVersion"], "1.2")

    def test_the_oldest_system_is_the_one_that_the_programs_are_built_for(self):
        info = plist("Info.plist.in", PROJECT_VERSION="1", VELMORA_SPARKLE_PLIST="", CMAKE_OSX_DEPLOYMENT_TARGET="99")
        self.assertEqual(info["LSMinimumSystemVersion"], "99")
        project = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
        self.assertLess(project.index("set(CMAKE_OSX_DEPLOYMENT_TARGET 13.3 "), project.index("project(Velmora"))

    def test_the_system_is_asked_for_consent_to_send_apple_events(self):
        info = plist("Info.plist.in", PROJECT_VERSION="1", VELMORA_SPARKLE_PLIST="")
        self.assertIn("Terminal", info["NSAppleEventsUsageDescription"])
        self.assertTrue(plist("Velmora.entitlements")["com.apple.security.automation.apple-events"])
        self.assertEqual(plist("ScriptHost.entitlements"), {"com.apple.security.automation.apple-events": True})

    def test_only_the_application_may_compile_code_at_run_time(self):
        more = set(plist("Velmora.entitlements")) - set(plist("ScriptHost.entitlements"))
        self.assertEqual(more, {"com.apple.security.cs.allow-jit"})

    def test_the_about_panel_has_a_copyright(self):
        info = plist("Info.plist.in", PROJECT_VERSION="1", VELMORA_SPARKLE_PLIST="")
        self.assertIn("Velmora authors", info["NSHumanReadableCopyright"])

    def test_only_linux_uses_the_tray_icon_of_qt(self):
        # On a Mac it opens the window with each click and, with some versions, ends the application.
        users = {path.name for path in (ROOT / "VelmoraApp").rglob("*.*") if "QSystemTrayIcon" in path.read_text(encoding="utf-8")}
        self.assertEqual(users, {"DesktopLinux.cpp"})

    def test_the_oldest_system_is_the_one_that_is_compiled_for(self):
        info = plist("Info.plist.in", PROJECT_VERSION="1", VELMORA_SPARKLE_PLIST="")
        script = (ROOT / "scripts" / "macos-check.sh").read_text(encoding="utf-8")
        self.assertIn(f"\ntarget={info['LSMinimumSystemVersion']}\n", script)

    def test_an_updater_adds_its_feed_and_its_key(self):
        more = "\t<key>SUFeedURL</key>\n\t<string>feed</string>\n"
        self.assertEqual(plist("Info.plist.in", PROJECT_VERSION="1", VELMORA_SPARKLE_PLIST=more)["SUFeedURL"], "feed")

    def test_the_script_lies_where_the_application_looks(self):
        bundle = (PACKAGING / "bundle.cmake").read_text(encoding="utf-8")
        source = (ROOT / "TerminalAutomation" / "AppleScript" / "ScriptSource.cpp").read_text(encoding="utf-8")
        name = "Velmora_TerminalAutomation.bundle"
        self.assertIn(f"Contents/Resources/{name}", bundle)
        self.assertIn(f'"{name}"', source)

    def test_what_is_inside_is_signed_before_what_holds_it(self):
        script = (PACKAGING / "sign.sh").read_text(encoding="utf-8")
        signed = re.findall(r'^ *(?:while .*do )?sign "([^"]*)"', script, re.M)
        self.assertEqual(signed[-4:], ["$app/Contents/Helpers/velmora", "$app/Contents/Helpers/velmora-watch", "$app/Contents/Helpers/velmora-script-host", "$app"])
        self.assertEqual(len([path for path in signed if "$sparkle" in path]), 4)
        self.assertIsNone(re.search(r"codesign.* --deep", script))

    def test_what_sends_apple_events_has_the_entitlement_and_nothing_else_has(self):
        script = (PACKAGING / "sign.sh").read_text(encoding="utf-8")
        entitled = re.findall(r'^ *sign "([^"]*)"[^"]*--entitlements', script, re.M)
        self.assertEqual(entitled, ["$app/Contents/Helpers/velmora-script-host", "$app"])

    def test_an_ad_hoc_signature_has_no_hardened_runtime(self):
        with tempfile.TemporaryDirectory() as folder:
            app = pathlib.Path(folder) / "Velmora.app"
            (app / "Contents" / "MacOS").mkdir(parents=True)
            said = pathlib.Path(folder) / "said"
            tool = pathlib.Path(folder) / "codesign"
            tool.write_text(f'#!/bin/sh\necho "$@" >>{said}\n')
            tool.chmod(0o755)
            for identity, hardened in (("-", False), ("Developer ID Application: N (T)", True)):
                said.unlink(missing_ok=True)
                subprocess.run([PACKAGING / "sign.sh", app, identity], check=True, capture_output=True,
                               env={"PATH": f"{folder}:/usr/bin:/bin"})
                signing = [line for line in said.read_text().splitlines() if "--sign" in line]
                self.assertTrue(signing)
                for line in signing:
                    self.assertEqual("--options runtime" in line, hardened, line)


if __name__ == "__main__":
    unittest.main()
