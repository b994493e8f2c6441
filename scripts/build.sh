#!/usr/bin/env bash
# Configures a preset and builds it, or only the targets named after it: build.sh PRESET [TARGET...]
# VELMORA_MCP_SCHEMAS, when it is set, goes to the cache variable of that name.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
shift
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
schemas=(${VELMORA_MCP_SCHEMAS:+"-DVELMORA_MCP_SCHEMAS=$VELMORA_MCP_SCHEMAS"})
# The builder's output goes to stderr, so that a script's own stdout stays its answer.
cmake --preset "$preset" "${launcher[@]}" "${schemas[@]}" >&2
cmake --build --preset "$preset" ${1:+--target "$@"} >&2
