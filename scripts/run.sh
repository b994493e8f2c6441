#!/usr/bin/env bash
# Sets up, builds and starts the bridge, and prints what an MCP client needs to reach it. Ends with Ctrl-C.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
scripts/build.sh release VelmoraHeadless VelmoraHelper

helper=$PWD/build/release/bin/velmora
cat <<END
The helper that MCP clients launch:
  $helper

For the configuration of an MCP client:
  {
    "mcpServers": {
      "velmora": { "command": "$helper" }
    }
  }

The bridge listens at (Ctrl-C ends it):
END
exec build/release/bin/velmora-headless
