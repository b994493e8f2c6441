#!/usr/bin/env bash
# Sets up, builds and runs every test; the last line counts them. Takes a preset ("dev" unless given).
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-dev}
scripts/setup.sh test
scripts/build.sh "$preset"

log=build/$preset/tests.log
status=0
# Most of the long tests wait for a shell or a clock: two for each core keep the cores at work.
ctest --preset "$preset" -j $((2 * $(getconf _NPROCESSORS_ONLN))) 2>&1 | tee "$log" | grep -vE '^ *[0-9]+/[0-9]+ Test .* Passed|^ +Start ' || status=${PIPESTATUS[0]}

# ctest's summary: "98% tests passed, 2 tests failed out of 100"
read -r failed total < <(sed -nE 's/^[0-9]+% tests passed, ([0-9]+) tests failed out of ([0-9]+)$/\1 \2/p' "$log" | tail -n 1)
if [ -z "${total:-}" ] || [ "$total" = 0 ]; then
  echo "no test ran" >&2
  exit 1
fi
echo "$((total - failed)) passed, $failed failed"
exit "$status"
