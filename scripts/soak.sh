#!/usr/bin/env bash
# Uses the real programs hard for a while, with a real tmux: soak.sh [SECONDS [SCENARIO...]] (120 and all unless given).
# Prints each promise as OK or MISS and counts them. VELMORA_BIN names a folder of programs to use instead of building.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-120}
shift || true
if [ -z "${VELMORA_BIN:-}" ]; then
  scripts/setup.sh test
  scripts/build.sh release -DVELMORA_BUILD_APP=ON VelmoraHelper VelmoraHeadless VelmoraApp
  VELMORA_BIN=build/release/bin
fi
VELMORA_BIN=$(realpath "$VELMORA_BIN")
export VELMORA_BIN
unset TMUX

# In namespaces of its own, where the system allows it, it may mount small disks, sees no bridge but its own, and nothing
# outlives it.
room=(unshare --mount --pid --fork --kill-child --mount-proc)
if [ "$(id -u)" != 0 ]; then room+=(--user --map-root-user); fi
if "${room[@]}" true 2>/dev/null; then
  # shellcheck disable=SC2016 # for the inner shell
  room+=(sh -c 'mount -t tmpfs none /run/user; exec "$@"' sh)
else
  echo 'NOTE  no namespaces here: what needs a disk of its own is left out' >&2
  room=()
fi
# The last resort: a run may be late by a minute and no more.
exec timeout --foreground --signal=KILL $((seconds + 60)) \
  ${room[@]+"${room[@]}"} /usr/bin/python3 -B tests/soak/run.py "$seconds" "$@"
