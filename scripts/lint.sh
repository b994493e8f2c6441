#!/usr/bin/env bash
# Every check of form, for people and for CI: prints OK or FAIL for each, with what is wrong, and counts them.
# The preset "dev" must be built. With --analyzer, as before a release, also walks through every
# function of the product, which takes longer than all the rest.
set -uo pipefail
cd "$(dirname "$0")/.." || exit

jobs=$(getconf _NPROCESSORS_ONLN)
passed=0
failed=0

mapfile -t sources < <(git ls-files '*.h' '*.cpp' '*.hh' '*.mm')
# What stands in for Apple's headers is Objective-C, and compiled by scripts/macos-check.sh.
mapfile -t headers < <(git ls-files '*.h' ':!tests/macos/declarations' ':!tests/macos/shim')
mapfile -t screens < <(git ls-files '*.qml')
mapfile -t product < <(git ls-files '*.cpp' | grep -vE '^(tests|benchmarks|fuzzers|cmake)/' | grep -v 'Mac\.cpp$')

qt=/usr/lib/qt6/bin
if ! [ -d "$qt" ]; then qt=$(qmake6 -query QT_INSTALL_BINS); fi

# check NAME COMMAND...: fails when the command fails or prints anything.
check() {
  local name=$1 output
  shift
  if output=$("$@" 2>&1) && [ -z "$output" ]; then
    echo "OK    $name"
    passed=$((passed + 1))
  else
    echo "FAIL  $name"
    printf '%s\n' "$output" | head -n 40 | sed 's/^/      /'
    failed=$((failed + 1))
  fi
}

format() { clang-format --dry-run -Werror "${sources[@]}"; }

# read_by_tidy TREE OPTIONS... < FILES
read_by_tidy() {
  local tree=$1
  shift
  tr '\n' '\0' | xargs -0 -n 1 -P "$jobs" clang-tidy --quiet -p "$tree" "$@" 2>/dev/null |
    grep -E ' (error|warning): ' | sort -u
}

# What clang-tidy sees in the syntax. It walks through every header that a file includes, which is most of its time, so it
# reads together the files that are compiled together.
tidy() {
  local tree=build/tidy/together folders file
  mkdir -p "$tree"
  # Without either, every file would pass unread.
  clang-tidy --version >"$tree/version" || return 1
  # Without the compiled headers, which are GCC's.
  sed -E 's/ -Winvalid-pch -include [^ ]+\/cmake_pch\.hxx//' build/dev/compile_commands.json >"$tree/compile_commands.json" || return 1
  sed -nE 's/^ *"file": "(.*\/unity_[0-9]+_cxx\.cxx)".*/\1/p' "$tree/compile_commands.json" |
    xargs -r grep -lE "^#include \"$PWD/($(IFS='|'; echo "${product[*]}"))\"" >"$tree/files"
  folders=$(printf '%s\n' "${product[@]%%/*}" | sort -u | paste -sd '|')
  {
    cat "$tree/files"
    for file in "${product[@]}"; do
      xargs -r grep -hF "\"$PWD/$file\"" <"$tree/files" | grep -q . || echo "$PWD/$file"
    done
  } | read_by_tidy "$tree" --checks=-clang-analyzer-*,-bugprone-suspicious-include --header-filter="^$PWD/($folders)/"
  return 0
}

# What it sees by walking through the functions, and what it says only of the file that it was given: each by itself, and
# without the compiled headers, which would hide what a file forgets to include.
analyzer() {
  local tree=build/tidy/alone
  mkdir -p build/tidy
  if ! cmake --preset dev -B "$tree" -DVELMORA_COMMON_HEADERS=OFF -DCMAKE_UNITY_BUILD=OFF >"$tree.log" 2>&1; then
    cat "$tree.log"
    return 1
  fi
  # What is generated stands in the tree that was built.
  sed -i "s#$PWD/$tree/#$PWD/build/dev/#g" "$tree/compile_commands.json"
  # A function is walked on 60,000 states instead of 225,000: that takes a quarter off the time of all checks.
  printf '%s\n' "${product[@]}" | read_by_tidy "$tree" \
    --checks=-*,clang-analyzer-*,-clang-analyzer-cplusplus.NewDeleteLeaks,misc-unused-using-decls \
    --extra-arg=-Xclang --extra-arg=-analyzer-config --extra-arg=-Xclang --extra-arg=max-nodes=60000
  return 0
}

# A file that may be larger than one idea takes gets a limit of its own here, with its reason; there is none so far.
sizes() {
  local file lines limit
  for file in "${sources[@]}" "${screens[@]}"; do
    case $file in
      tests/*) limit=600 ;;
      *.qml) limit=250 ;;
      *.h) limit=200 ;;
      *) limit=400 ;;
    esac
    lines=$(wc -l <"$file")
    if [ "$lines" -gt "$limit" ]; then echo "$file: $lines lines, $limit at most"; fi
  done
  return 0
}

# A source file that is hardly more than its frame joins its neighbour, or says in its first line why it stands alone.
crumbs() {
  local file
  for file in $(git ls-files '*.cpp' '*.mm' | grep -vE '^(tests|benchmarks|fuzzers|cmake)/'); do
    if [ "$(wc -l <"$file")" -lt 25 ] && ! head -n 1 "$file" | grep -q '^// '; then
      echo "$file: fewer than 25 lines, and the first does not say why"
    fi
  done
}

# Every header compiles alone. clang-tidy shows it for one whose .cpp file includes it first.
headersAlone() {
  local flags header unproven=()
  for header in "${headers[@]}"; do
    [[ " ${product[*]} " == *" ${header%.h}.cpp "* && $(grep -m 1 '^#include' "${header%.h}.cpp") == "#include \"$header\"" ]] ||
      unproven+=("$header")
  done
  flags="$(pkg-config --cflags pangocairo Qt6DBus Qt6Network Qt6Quick Qt6QuickControls2 Qt6Widgets) -fPIC -DQT_NO_KEYWORDS"
  # shellcheck disable=SC2086 # the flags are separate words
  printf '%s\0' "${unproven[@]}" | xargs -0 -P "$jobs" -I HEADER \
    g++ -std=c++20 -fsyntax-only -I. -Wall -Wextra -Wno-unused-const-variable -x c++ $flags \
    -DVELMORA_BIN='""' -DVELMORA_TEST_DATA='""' -DTMUX_RECORDER='""' -DTMUX_VERSIONS='""' -include HEADER /dev/null
}

# A folder's includes point one way.
includes() {
  local rule folder forbidden
  for rule in \
    'System:MacPlatform|ShellIntegration|Bridge|ClientSetup|LocalControl|TerminalAutomation|Velmora' \
    'ShellIntegration:MacPlatform|Bridge|ClientSetup|LocalControl|TerminalAutomation|Velmora' \
    'BridgeModels:MacPlatform|ShellIntegration|ClientSetup|LocalControl|TerminalAutomation|BridgeCore|BridgeHost|Velmora' \
    'MacPlatform:ClientSetup|LocalControl|TerminalAutomation|BridgeCore|BridgeHost|Velmora' \
    'ClientSetup:LocalControl|TerminalAutomation|BridgeCore|BridgeHost|Velmora' \
    'TerminalAutomation:LocalControl|BridgeCore|BridgeHost|Velmora' \
    'BridgeCore:LocalControl|BridgeHost|Velmora|TerminalAutomation/(Tmux|AppleScript|Unavailable)' \
    'LocalControl:BridgeHost|Velmora|TerminalAutomation/(Tmux|AppleScript|Unavailable)' \
    'VelmoraScriptHost:LocalControl|BridgeCore|BridgeHost|Velmora' \
    'VelmoraHelper:BridgeCore|BridgeHost|TerminalAutomation|VelmoraHeadless' \
    'VelmoraHelper/Protocol:VelmoraHelper/[^P]' \
    'VelmoraHelper/Bridge:VelmoraHelper/[^B]' \
    'VelmoraHelper/Tools:VelmoraHelper/(Mcp|Stdio|Commands|HelperLog)' \
    'VelmoraHelper/Mcp:VelmoraHelper/(Stdio|Commands)' \
    'VelmoraHelper/Stdio:VelmoraHelper/Commands' \
    'VelmoraHelper/Commands:VelmoraHelper/(Mcp|Stdio|Watch)' \
    'VelmoraHelper/Watch:VelmoraHelper/(Mcp|Stdio|Tools)' \
    'VelmoraApp:LocalControl/(Socket|UnixSocket(Server|Client|Connection))' \
    'VelmoraApp/Platform:BridgeHost|BridgeCore|VelmoraApp/[^P]' \
    'VelmoraApp/AppModel:VelmoraApp/[^AP]' \
    'VelmoraApp/Style:VelmoraApp/[^S]'; do
    folder=${rule%%:*}
    forbidden=${rule#*:}
    git grep -nE "#include \"($forbidden)" -- "$folder"
  done
  git grep -nE '#include <(Qt?[A-Z]|q[a-z]+\.h)' -- System ShellIntegration BridgeModels MacPlatform ClientSetup LocalControl TerminalAutomation BridgeCore BridgeHost VelmoraHeadless VelmoraHelper
  return 0
}

# Each test file stands in exactly one list of sources, and none is switched off.
tests() {
  local file name count
  while read -r file; do
    # shellcheck disable=SC2016 # the variable is CMake's
    name=$(basename "$file" | sed -E 's/(Linux|Mac)Tests\.cpp$/${VELMORA_PLATFORM}Tests.cpp/')
    count=$(git grep -hwF "$name" -- 'tests/*CMakeLists.txt' | wc -l)
    if [ "$count" != 1 ]; then echo "$file stands in $count lists of sources"; fi
  done < <(git ls-files 'tests/*Tests.cpp')
  while read -r file; do
    git grep -qF "$(basename "$file")" -- 'tests/*CMakeLists.txt' || echo "$file stands in no list of tests"
  done < <(git ls-files 'tests/*_tests.py')
  git grep -nE 'DISABLED_|GTEST_SKIP|EXPECT_TRUE\(true\)' -- tests
  return 0
}

# Unit tests decide the time themselves. A test of the real clock, a real thread or a real program may wait.
wallClock() {
  git grep -nE 'sleep_for|usleep|[^a-zA-Z]sleep\(|system_clock' -- tests ':!tests/TerminalAutomation/Tmux' ':!tests/support' ':!tests/mcp' ':!tests/remote' ':!tests/macos/script' \
    ':!tests/VelmoraApp/e2e' ':!tests/soak'
  return 0
}

unfinished() {
  git grep -InE '\b(TODO|FIXME|XXX)\b' -- ':!scripts/lint.sh'
  return 0
}

# qmlformat of Qt 6.4 drops what follows a pragma's name, and only writes.
qmlFormat() {
  local file
  for file in "${screens[@]}"; do
    "$qt/qmlformat" "$file" 2>/dev/null | sed 's/^pragma ComponentBehavior$/&: Bound/' |
      cmp -s - "$file" || echo "$file is not as qmlformat writes it"
  done
}

# A module is read where the build puts it together. The style's contentItems have ids: nobody replaces them.
qmlLint() {
  local file module names=()
  for file in $(git ls-files 'VelmoraApp/*.qml'); do
    module=build/dev/qml/Velmora
    case $file in VelmoraApp/Style/*) module+=/Style ;; esac
    cp "$file" "$module/"
    names+=("$module/${file##*/}")
  done
  "$qt/qmllint" -I build/dev/qml --deferred-property-id disable "${names[@]}"
}

# Colours, fonts and sizes stand in Theme.qml. Half of something and twice a margin are no sizes.
literals() {
  local geometry='(^|[^a-zA-Z])([a-zA-Z]*([wW]idth|[hH]eight|[pP]adding|[mM]argins?|[sS]pacing|[rR]adius|[sS]ize|[oO]pacity|[dD]uration|delay)|x|y): '
  git grep -nE '"#[0-9a-fA-F]{3,8}"|Qt\.(rgba|hsla|lighter|darker|font)\(|[cC]olor: "[a-z]+"|font\.[a-z]' -- 'VelmoraApp/*.qml' ':!*/Theme.qml' |
    grep -v '"transparent"'
  git grep -nE "$geometry" -- 'VelmoraApp/*.qml' ':!*/Theme.qml' | sed -E 's/\b2 \* |\/ 2\b//g' |
    grep -E ':[0-9]+:.*(: |[^a-zA-Z0-9.])([2-9]|[0-9]{2,}|0\.[0-9]+)\b'
  return 0
}

# A view model decides; what QML has to work out fits in ten lines.
functions() {
  # shellcheck disable=SC2016 # the fields are awk's
  git ls-files -z 'VelmoraApp/*.qml' | xargs -0 awk '
    FNR == 1 { start = 0 }
    !start && /(function .*|=> )\{$/ { start = FNR; match($0, /^ */); indent = RLENGTH }
    start && FNR > start && /^ *\}/ { match($0, /^ */)
      if (RLENGTH == indent) {
        if (FNR - start - 1 > 10) print FILENAME ":" start ": " FNR - start - 1 " lines in a function, 10 at most"
        start = 0 } }'
}

check 'format (clang-format)' format
check 'format of QML (qmlformat)' qmlFormat
check 'QML (qmllint)' qmlLint
check 'colours, fonts and sizes stand in the theme' literals
check 'functions in QML are small' functions
check 'every text is translated' python3 scripts/check-texts.py
check 'sizes of files' sizes
check 'no crumbs' crumbs
check 'includes point one way' includes
check 'every test file runs' tests
check 'no wall clock in unit tests' wallClock
check 'links in the documents' python3 scripts/check-docs.py links
check 'nothing unfinished' unfinished
check 'shell scripts (shellcheck)' shellcheck scripts/*.sh packaging/macos/*.sh packaging/completions/*.bash .ci/*
check 'every header compiles alone' headersAlone
check 'clang-tidy' tidy
if [ "${1:-}" = --analyzer ]; then check 'the static analyzer (clang-tidy)' analyzer; fi

echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
