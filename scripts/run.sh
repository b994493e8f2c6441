#!/usr/bin/env bash
# Sets up, builds and starts the bridge, and prints what an MCP client needs to reach it: the application where there is
# a display, else the bridge without a window. Ends with Ctrl-C.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
if [ "$(uname -s)" = Darwin ] || [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  target=VelmoraApp program=velmora-app
else
  target=VelmoraHeadless program=velmora-headless
fi
scripts/build.sh release "$target" VelmoraHelper

helper=$PWD/build/release/bin/velmora
cat <<END
The helper that MCP clients launch:
  $helper

For the configuration of an MCP client ($helper config lists more forms):
$("$helper" config cursor 2>/dev/null | sed 's/^/  /')

Starting $program (Ctrl-C ends it):
END
exec "build/release/bin/$program"
