#!/usr/bin/env bash
# Configures a preset and builds it, or only the targets named after it: build.sh PRESET [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
shift
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
# The builder's output goes to stderr, so that a script's own stdout stays its answer.
cmake --preset "$preset" "${launcher[@]}" >&2
cmake --build --preset "$preset" ${1:+--target "$@"} >&2
