#!/usr/bin/env bash
# Drives the helper through the official MCP SDK (from npm, for development only): without the bridge, then with a
# bridge on a private tmux server. The last line counts the checks.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
scripts/build.sh release VelmoraHeadless VelmoraHelper
npm ci --prefix tests/e2e --ignore-scripts --no-audit --no-fund --loglevel=error >&2

bin=$PWD/build/release/bin
folder=$(mktemp -d /tmp/velmora-e2e-XXXXXX)
bridge=
# shellcheck disable=SC2317 # runs from the trap
finish() {
  if [ -n "$bridge" ]; then
    kill "$bridge" 2>/dev/null || true
    wait "$bridge" 2>/dev/null || true
  fi
  TMUX_TMPDIR=$folder tmux -S "$folder/tmux-$(id -u)/default" kill-server 2>/dev/null || true
  rm -rf "$folder"
}
trap finish EXIT

export HOME=$folder XDG_RUNTIME_DIR=$folder XDG_DATA_HOME=$folder/data XDG_CONFIG_HOME=$folder/config TMUX_TMPDIR=$folder
unset TMUX TMUX_PANE
counts=$folder/counts
status=0
node tests/e2e/sdk-client.mjs "$bin/velmora" absent | tee -a "$counts" || status=1

tmux -f /dev/null new-session -d -x 100 -y 30
mkfifo "$folder/ready"
"$bin/velmora-headless" >"$folder/ready" &
bridge=$!
read -r _ <"$folder/ready"
node tests/e2e/sdk-client.mjs "$bin/velmora" running | tee -a "$counts" || status=1

awk '{ passed += $1; failed += $3 } END { printf "%d passed, %d failed\n", passed, failed }' "$counts"
exit "$status"
