#!/usr/bin/env bash
# Sets up, builds and starts the bridge, and prints what an MCP client needs to reach it: the application where there is
# a display, else the bridge without a window. Ends with Ctrl-C.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "$(uname -s)" = Darwin ] || [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  program=velmora-app
  scripts/setup.sh build
  scripts/build.sh release -DVELMORA_BUILD_APP=ON VelmoraApp VelmoraHelper
else
  program=velmora-headless
  scripts/setup.sh core
  scripts/build.sh release -DVELMORA_BUILD_APP=OFF VelmoraHeadless VelmoraHelper
fi

helper=$PWD/build/release/bin/velmora
cat <<END
The helper that MCP clients launch:
  $helper

For the configuration of an MCP client ($helper config lists more forms):
$("$helper" config cursor 2>/dev/null | sed 's/^/  /')

Starting $program (Ctrl-C ends it):
END
exec "build/release/bin/$program"
