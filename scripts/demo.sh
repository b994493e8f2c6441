#!/usr/bin/env bash
# The main job, end to end and on real input: a private tmux server, the bridge without a window, and the helper
# launched as an MCP client launches it. Prints each step with what came back; ends non-zero when a step fails.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh core
scripts/build.sh release -DVELMORA_BUILD_APP=OFF VelmoraHeadless VelmoraHelper
exec python3 scripts/demo.py build/release/bin
