#!/usr/bin/env bash
# Configures a preset and builds it, or only the targets named after it: build.sh PRESET [-DOPTION=VALUE...] [TARGET...]
# Compiles some files at a time together, which more than halves the time of a whole build; CONTRIBUTING.md says how to
# build while changing a file.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
shift
options=(-DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=12)
if command -v ccache >/dev/null; then
  # ccache takes files with compiled headers only when it is told these two.
  sloppiness=$(ccache --get-config sloppiness | tr -d ' '),pch_defines,time_macros
  options+=("-DCMAKE_CXX_COMPILER_LAUNCHER=env;CCACHE_SLOPPINESS=${sloppiness#,};ccache")
fi
while [[ ${1:-} == -D* ]]; do
  options+=("$1")
  shift
done
# The builder's output goes to stderr, so that a script's own stdout stays its answer.
cmake --preset "$preset" "${options[@]}" >&2
cmake --build --preset "$preset" ${1:+--target "$@"} >&2
