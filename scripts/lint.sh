#!/usr/bin/env bash
# Every check of form, for people and for CI: prints OK or FAIL for each, with what is wrong, and counts them.
# The build tree of the preset "dev" must be configured.
set -uo pipefail
cd "$(dirname "$0")/.." || exit

jobs=$(getconf _NPROCESSORS_ONLN)
passed=0
failed=0

mapfile -t sources < <(git ls-files '*.h' '*.cpp')
mapfile -t headers < <(git ls-files '*.h')
mapfile -t product < <(git ls-files '*.cpp' | grep -vE '^(tests|benchmarks|fuzzers|cmake)/' | grep -v 'Mac\.cpp$')

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

tidy() {
  # Without these two every file would pass unread.
  if ! command -v clang-tidy >/dev/null || [ ! -f build/dev/compile_commands.json ]; then
    echo 'clang-tidy or build/dev/compile_commands.json is missing'
    return 1
  fi
  printf '%s\0' "${product[@]}" |
    xargs -0 -n 2 -P "$jobs" clang-tidy --quiet -p build/dev 2>/dev/null | grep -E ' (error|warning): ' | sort -u
  return 0
}

# A file that may be larger than one idea takes gets a limit of its own here, with its reason; there is none so far.
sizes() {
  local file lines limit
  for file in "${sources[@]}"; do
    case $file in
      tests/*) limit=600 ;;
      *.h) limit=200 ;;
      *) limit=400 ;;
    esac
    lines=$(wc -l <"$file")
    if [ "$lines" -gt "$limit" ]; then echo "$file: $lines lines, $limit at most"; fi
  done
  return 0
}

# Every header compiles alone, with the flags of the file's own build.
headersAlone() {
  local flags
  flags=$(pkg-config --cflags pangocairo)
  # shellcheck disable=SC2086 # the flags are separate words
  printf '%s\0' "${headers[@]}" | xargs -0 -P "$jobs" -I HEADER \
    g++ -std=c++20 -fsyntax-only -I. -Wall -Wextra -Wno-unused-const-variable -x c++ $flags \
    -DVELMORA_BIN='""' -DVELMORA_TEST_DATA='""' -DTMUX_RECORDER='""' -include HEADER /dev/null
}

# A folder's includes point one way.
includes() {
  local rule folder forbidden
  for rule in \
    'BridgeModels:LocalControl|TerminalAutomation|BridgeCore|BridgeHost|Velmora' \
    'TerminalAutomation:LocalControl|BridgeCore|BridgeHost|Velmora' \
    'BridgeCore:LocalControl|BridgeHost|Velmora|TerminalAutomation/(Tmux|AppleScript|Unavailable)' \
    'LocalControl:BridgeHost|Velmora|TerminalAutomation/(Tmux|AppleScript|Unavailable)' \
    'VelmoraHelper:BridgeCore|BridgeHost|TerminalAutomation|VelmoraHeadless'; do
    folder=${rule%%:*}
    forbidden=${rule#*:}
    git grep -nE "#include \"($forbidden)" -- "$folder"
  done
  git grep -nE '#include <(Q[A-Z]|q[a-z]+\.h)' -- BridgeModels LocalControl TerminalAutomation BridgeCore BridgeHost VelmoraHeadless VelmoraHelper
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
  git grep -nE 'DISABLED_|GTEST_SKIP|EXPECT_TRUE\(true\)' -- tests
  return 0
}

# Unit tests decide the time themselves. A test of the real clock, a real thread or a real program may wait.
wallClock() {
  git grep -nE 'sleep_for|usleep|[^a-zA-Z]sleep\(|system_clock' -- tests ':!tests/TerminalAutomation/Tmux' ':!tests/support'
  return 0
}

unfinished() {
  git grep -nE '\b(TODO|FIXME|XXX)\b' -- ':!scripts/lint.sh'
  return 0
}

check 'format (clang-format)' format
check 'sizes of files' sizes
check 'includes point one way' includes
check 'every test file runs' tests
check 'no wall clock in unit tests' wallClock
check 'nothing unfinished' unfinished
check 'shell scripts (shellcheck)' shellcheck scripts/*.sh .ci/run
check 'every header compiles alone' headersAlone
check 'clang-tidy' tidy

echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
