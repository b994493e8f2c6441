#!/usr/bin/env python3
"""Runs the Objective-C++ of the product here: GNUstep in the place of Apple's Foundation, fakes in that of the rest.

    runShims.py FOLDER            compiles everything to FOLDER and runs the tests
    runShims.py FOLDER --faults   plants the faults below, one at a time; each must compile, and make a test fail

Run it from the source directory. Automatic reference counting is not run: GNUstep's run-time library here has none.
"""

import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys

ENGINE = "TerminalAutomation/AppleScript/ScriptEngineMac.mm"
WINDOWS = "TerminalAutomation/AppleScript/ScreenWindowsMac.mm"
SCRIPT = "TerminalAutomation/AppleScript/ScriptSourceMac.mm"
APPLICATION = "MacPlatform/ApplicationMac.mm"
PERMISSIONS = "MacPlatform/PermissionsMac.mm"
STATUS_ITEM = "MacPlatform/StatusItemMac.mm"
UPDATER = "MacPlatform/UpdaterSparkleMac.mm"
DEFAULTS = "MacPlatform/UserDefaultsMac.mm"
HOST = "VelmoraScriptHost/main.mm"
SHIMS = [ENGINE, WINDOWS, SCRIPT, APPLICATION, PERMISSIONS, STATUS_ITEM, UPDATER, DEFAULTS]
FAKES = ["tests/macos/shim/Fakes.mm", "tests/macos/shim/FakeSystem.mm"]
TESTS = ["tests/macos/shim/MacPlatformTests.mm", "tests/macos/shim/ScriptEngineMacTests.mm"]
PLAIN = ["TerminalAutomation/AppleScript/ScriptSource.cpp", "System/Utf8.cpp"]
REQUESTS = "tests/macos/shim/OneByteRequests.mm"

# What is replaced, and what takes its place.
FAULTS = {
    ENGINE: [
        ("atIndex:++position", "atIndex:(++position > 1 ? 1 : position)"),
        ("position <= count", "position < count"),
        ("[stringOf(handler) lowercaseString]", "stringOf(handler)"),
        ("[value int32Value]", "0"),
        ("[number longLongValue]", "0"),
        (" = 'snam'", " = 'name'"),
        ("if (reply == nil)", "if (reply == nil && error == nil)"),
        ("[value booleanValue]", "[value int32Value] == 0"),
        ("(bundleIdentifier, asksUser);", "(bundleIdentifier, !asksUser);"),
    ],
    WINDOWS: [
        ("CFRelease(list);", ""),
        ("if (list == nullptr) return {};", ""),
        ("(window, kCGWindowLayer)", "(window, kCGWindowNumber)"),
        ("kCGWindowListOptionOnScreenOnly | ", ""),
        ("windows.push_back(", "windows.insert(windows.begin(), "),
    ],
    APPLICATION: [
        ("look < 2", "look < 1"),
        ("count] > 0", "count] > 1"),
        ("setActivates:NO", "setActivates:YES"),
        ("setAddsToRecentItems:NO", "setAddsToRecentItems:YES"),
        ("if (application == nil) return;", ""),
        ("UserInitiatedAllowingIdleSystemSleep", "UserInitiated"),
        ("activateIgnoringOtherApps:YES", "activateIgnoringOtherApps:NO"),
        ("orderFrontStandardAboutPanel:nil", "orderFrontStandardAboutPanel:application"),
        ("return [[NSWorkspace sharedWorkspace] openURL", "return ![[NSWorkspace sharedWorkspace] openURL"),
    ],
    PERMISSIONS: [
        ("@YES", "@NO"),
        ("== SMAppServiceStatusEnabled", "!= SMAppServiceStatusNotRegistered"),
        ("return enabled ?", "return !enabled ?"),
        ("if (!enabled &&", "if (enabled &&"),
        ("typeWildCard, asksUser", "typeWildCard, !asksUser"),
        ("typeWildCard, typeWildCard", "typeWildCard, 0"),
    ],
    STATUS_ITEM: [
        ("setTemplate:YES", "setTemplate:NO"),
        ("[item_ setMenu:menu];", ""),
        ("removeStatusItem:item_", "removeStatusItem:nil"),
        ("NSSquareStatusItemLength", "-1"),
        ("length:png.size()", "length:png.size() - 1"),
        ("[[item_ button] setImage:image];", ""),
    ],
    UPDATER: [
        ("if (date == nil)", "if (date != nil)"),
        ("initWithStartingUpdater:YES", "initWithStartingUpdater:NO"),
        ("timeIntervalSinceReferenceDate", "timeIntervalSince1970"),
        ("setAutomaticallyChecksForUpdates:automatically", "setAutomaticallyChecksForUpdates:!automatically"),
        ("[controller_ checkForUpdates:nil];", ""),
    ],
    DEFAULTS: [
        ("if ([defaults objectForKey:name] == nil) return std::nullopt;", ""),
        ("if (text == nil) return std::nullopt;", ""),
        ("setBool:value", "setBool:!value"),
        ("setObject:stringOf(value)", "setObject:@(1)"),
    ],
    HOST: [
        ("  [static_cast<NSFileHandle*>([notification object]) waitForDataInBackgroundAndNotify];", ""),
        ("::dup2(STDERR_FILENO, STDOUT_FILENO);", ""),
        ("[application setActivationPolicy:NSApplicationActivationPolicyProhibited];", ""),
        ('velmora::mac::stayAwake("the bridge waits for answers");', ""),
    ],
}


class Failure(Exception):
    """A command that failed, with its output."""


def run(command, **options):
    ended = subprocess.run(command, capture_output=True, check=False, timeout=60, **options)
    if ended.returncode != 0:
        raise Failure((ended.stdout + ended.stderr).decode(errors="replace"))
    return ended


class Shims:
    def __init__(self, folder):
        self.folder = folder
        headers = folder / "headers"
        headers.mkdir(parents=True, exist_ok=True)
        (folder / "home").mkdir(exist_ok=True)
        if not (headers / "objc").exists():
            gcc = subprocess.check_output(["g++", "-print-file-name=include"], text=True).strip()
            (headers / "objc").symlink_to(f"{gcc}/objc")
        libgcc = subprocess.check_output(["g++", "-print-libgcc-file-name"], text=True).strip()
        self.libraries = [f"-L{os.path.dirname(libgcc)}", "-lgnustep-base", "-lobjc", "-lgmock", "-lgtest"]
        self.flags = "-std=c++20 -Wall -Wextra -Werror -Wno-four-char-constants -Wno-unused-parameter -I.".split()
        self.objective = "-fobjc-runtime=gcc -fexceptions -fobjc-exceptions -fconstant-string-class=NSConstantString".split()
        self.objective += ["-Itests/macos/shim", "-isystem", "/usr/include/GNUstep", "-isystem", str(headers)]
        self.objective += ["-isystem", "tests/macos/declarations"]

    def object(self, source):
        return self.folder / (source.replace("/", "_") + ".o")

    def compile(self, source, output=None):
        flags = self.flags + (self.objective if str(source).endswith(".mm") else [])
        run(["clang++", *flags, "-c", str(source), "-o", str(output or self.object(source))])

    def link(self, output, sources, *more, instead=None):
        """`instead` is a pair: a source, and the object that takes the place of its own."""
        objects = [str(instead[1] if instead and instead[0] == source else self.object(source)) for source in sources]
        run(["clang++", *objects, "-o", str(output), *self.libraries, *more])

    def test(self, name, instead=None):
        """Runs everything that the source in `instead` is part of."""
        environment = {**os.environ, "HOME": str(self.folder / "home")}
        if not instead or instead[0] != HOST:
            program = self.folder / name
            self.link(program, SHIMS + FAKES + TESTS + PLAIN, "-lgtest_main", instead=instead)
            said = run([program, "--gtest_brief=1"], env=environment).stdout.decode()
            print(*re.findall(r"^\[==========\] (\d+ tests) .*ran", said, re.M))
        if not instead or instead[0] == HOST:
            program = self.folder / (name + "-host")
            self.link(program, [HOST, REQUESTS, ENGINE, APPLICATION, PERMISSIONS, *FAKES], instead=instead)
            self.test_host(program, environment)

    @staticmethod
    def test_host(program, environment):
        """Each request is answered, nothing else stands among the replies, and the end of the input ends it."""
        for requests, replies in ((b"ab", b"bc"), (b"aqb", b"b")):
            ended = run([program], input=requests, env=environment)
            expected = b"policy 2\nactivity 15728639 the bridge waits for answers\n"
            if ended.stdout != replies or ended.stderr != expected:
                raise Failure(f"{requests!r}: {ended.stdout!r}, {ended.stderr!r}")

    def plant(self, number, source, old, new):
        """What is wrong with a fault, if anything."""
        text = pathlib.Path(source).read_text(encoding="utf-8")
        if old not in text:
            return f"cannot be planted any more: {source}: {old}"
        planted = self.folder / f"planted-{number}.mm"
        planted.write_text(text.replace(old, new), encoding="utf-8")
        try:
            self.compile(planted, planted.with_suffix(".o"))
        except Failure as failure:
            return f"does not compile: {source}: {old}\n{failure}"
        try:
            self.test(f"tests-{number}", instead=(source, planted.with_suffix(".o")))
        except (Failure, subprocess.TimeoutExpired):
            return None
        return f"not found: {source}: {old}"


def main():
    if len(sys.argv) < 2 or sys.argv[2:] not in ([], ["--faults"]):
        sys.exit(__doc__)
    shims = Shims(pathlib.Path(sys.argv[1]).resolve())
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        if sys.argv[2:]:
            planted = [(source, *fault) for source, faults in FAULTS.items() for fault in faults]
            wrong = list(filter(None, pool.map(lambda pair: shims.plant(pair[0], *pair[1]), enumerate(planted))))
            if wrong:
                sys.exit("\n".join(wrong))
            print(f"{len(planted)} faults found")
            return
        try:
            list(pool.map(shims.compile, [*SHIMS, *FAKES, *TESTS, *PLAIN, HOST, REQUESTS]))
            shims.test("tests")
        except Failure as failure:
            sys.exit(str(failure))


if __name__ == "__main__":
    main()
