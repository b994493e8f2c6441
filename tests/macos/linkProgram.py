#!/usr/bin/env python3
"""Links a program for macOS without Apple's SDK.

    linkProgram.py COMPILER COMPILER_LIBRARY DECLARATIONS OUTPUT INPUT...

Every symbol that the inputs leave open must be one of: what our declarations of Apple's frameworks declare, an entry of
the Objective-C runtime, the C++ library, ICU as it is installed here, or the system library (which the compiler knows).
For each of these a stub is written that names the library's place on a Mac; then the compiler links against them. A
symbol that nobody has ends the link, so a function that was forgotten shows.
"""

import pathlib
import re
import subprocess
import sys

import machO
from checkDeclarations import Declarations

# clang's documentation of Automatic Reference Counting, and objc/runtime.h and objc/message.h.
OBJC_RUNTIME = set("""
objc_alloc objc_alloc_init objc_allocWithZone objc_autorelease objc_autoreleasePoolPop objc_autoreleasePoolPush
objc_autoreleaseReturnValue objc_claimAutoreleasedReturnValue objc_copyWeak objc_destroyWeak objc_enumerationMutation
objc_initWeak objc_loadWeakRetained objc_msgSend objc_msgSendSuper2 objc_opt_class objc_opt_isKindOfClass
objc_release objc_retain objc_retainAutorelease objc_retainAutoreleasedReturnValue objc_retainAutoreleaseReturnValue
objc_retainBlock objc_storeStrong objc_storeWeak objc_unsafeClaimAutoreleasedReturnValue
_objc_empty_cache OBJC_CLASS_$_NSObject OBJC_METACLASS_$_NSObject
""".split())
CXX = re.compile(r"_(_Zn[wa]|_Zd[la]|__cxa_|__dynamic_cast$|__gxx_personality_v0$|_ZSt|_Z(N|NK|T[VISTC]N?|GVN)K?(St|10__cxxabiv1))")
CXX_BASIC_TYPES = re.compile(r"__ZT[IS]P?K?[a-z]$")
ICU = re.compile(r"_(\w+_\d\d|_Z(N|NK|TVN?|TIN?)K?6icu_\d\d\w+)$")

# Where the libraries lie on a Mac.
FRAMEWORK = "/System/Library/Frameworks/{0}.framework/Versions/{1}/{0}"
PLACES = {
    "objc": "/usr/lib/libobjc.A.dylib",
    "c++": "/usr/lib/libc++.1.dylib",
    "ncurses": "/usr/lib/libncurses.5.4.dylib",
    "icu": "/opt/homebrew/opt/icu4c/lib/libicuuc.dylib",
    "CoreFoundation": FRAMEWORK.format("CoreFoundation", "A"),
    "Foundation": FRAMEWORK.format("Foundation", "C"),
    "AppKit": FRAMEWORK.format("AppKit", "C"),
    "ApplicationServices": FRAMEWORK.format("ApplicationServices", "A"),
    "CoreServices": FRAMEWORK.format("CoreServices", "A"),
    "CoreGraphics": FRAMEWORK.format("CoreGraphics", "A"),
    "ServiceManagement": FRAMEWORK.format("ServiceManagement", "A"),
    "Sparkle": "@rpath/Sparkle.framework/Versions/B/Sparkle",
}


def declared_symbols(folder):
    """The library of each symbol that the declarations give."""
    declarations = Declarations(folder)
    symbols = {"___CFConstantStringClassReference": "CoreFoundation", "___dso_handle": "system"}
    for name, framework in declarations.classes.items():
        symbols["_OBJC_CLASS_$_" + name] = symbols["_OBJC_METACLASS_$_" + name] = framework
    for name in [*declarations.functions, *declarations.constants]:
        symbols["_" + name] = declarations.frameworks[name]
    return symbols


def installed_symbols(*libraries):
    """What libraries that are installed here export, as a Mac spells it."""
    symbols = set()
    for library in libraries:
        path = subprocess.check_output(["c++", f"-print-file-name={library}"], text=True).strip()
        listing = subprocess.check_output(["nm", "-D", "--defined-only", path], text=True)
        symbols.update("_" + line.split()[-1].split("@")[0] for line in listing.splitlines())
    return symbols


def system_symbols(lib):
    """The names in the compiler's list of the system library."""
    text = pathlib.Path(lib, "libc", "darwin", "libSystem.tbd").read_text(encoding="utf-8")
    return set(re.findall(r"[\w$.]+", text))


def classify(undefined, declared, system, icu, ncurses):
    """Symbols by library; what belongs nowhere under "unknown"."""
    result = {}
    for symbol in undefined:
        if symbol in declared:
            library = declared[symbol]
        elif symbol[1:] in OBJC_RUNTIME or symbol.startswith("_objc_msgSend$"):
            library = "objc"
        elif CXX.match(symbol) or CXX_BASIC_TYPES.match(symbol):
            library = "c++"
        elif ICU.match(symbol) and symbol in icu:
            library = "icu"
        elif symbol in system:
            library = "system"
        elif symbol in ncurses:
            library = "ncurses"
        else:
            library = "unknown"
        result.setdefault(library, set()).add(symbol)
    return result


def stub(place, symbols):
    names = ", ".join(f"'{symbol}'" for symbol in sorted(symbols))
    return f"""--- !tapi-tbd
tbd-version: 4
targets: [ arm64-macos, x86_64-macos ]
install-name: '{place}'
exports:
  - targets: [ arm64-macos, x86_64-macos ]
    symbols: [ {names} ]
...
"""


def needed(inputs):
    """Open symbols of the objects, and of the archives' members that they pull in."""
    defined, undefined = set(), set()
    archives = []
    for path in inputs:
        (archives.extend if path.endswith(".a") else add_all(defined, undefined))(machO.read(path))
    changed = True
    while changed:
        changed = False
        for member in list(archives):
            if member.defined & (undefined - defined):
                archives.remove(member)
                add_all(defined, undefined)([member])
                changed = True
    return undefined - defined


def add_all(defined, undefined):
    def add(objects):
        for item in objects:
            defined.update(item.defined)
            undefined.update(item.undefined)

    return add


def main():
    compiler, lib, folder, output, *inputs = sys.argv[1:]
    files = [path for path in inputs if path.endswith((".o", ".a"))]
    libraries = classify(needed(files), declared_symbols(folder), system_symbols(lib),
                         installed_symbols("libicuuc.so"), installed_symbols("libncursesw.so.6", "libtinfo.so.6"))
    if unknown := libraries.pop("unknown", None):
        sys.exit(f"{output}: nobody has {', '.join(sorted(unknown))}")
    libraries.pop("system", None)
    stubs = pathlib.Path(output + ".stubs")
    stubs.mkdir(exist_ok=True)
    arguments = []
    for library, symbols in sorted(libraries.items()):
        (stubs / f"libvelmora-{library}.tbd").write_text(stub(PLACES[library], symbols), encoding="utf-8")
        arguments.append(f"-lvelmora-{library}")
    command = [compiler, *files, f"-L{stubs}", *arguments, "-o", output]
    sys.exit(subprocess.call(command))


if __name__ == "__main__":
    main()
