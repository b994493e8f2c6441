#!/usr/bin/env bash
# Sets up, builds the bench preset and runs every benchmark; each program's results stay as JSON in
# build/bench/benchmarks. At the end: every budgeted figure against its budget. Takes the names of programs to run
# only those ("bench.sh Socket Helper"). Budgets are ratios or small differences within one run; still, run it while
# the machine has nothing else to do. A missed budget is printed, and is no failure of the script.
set -euo pipefail
cd "$(dirname "$0")/.."

names=("$@")
if [ ${#names[@]} = 0 ]; then
  for source in benchmarks/*Benchmarks.cpp; do names+=("$(basename "$source" Benchmarks.cpp)"); done
fi

scripts/setup.sh
scripts/build.sh bench "${names[@]/%/Benchmarks}"
results=build/bench/benchmarks/results
rm -rf "$results"
mkdir -p "$results"
for name in "${names[@]}"; do
  echo "== $name"
  "build/bench/bin/${name}Benchmarks" --benchmark_out="$results/$name.json" --benchmark_out_format=json
done
echo "== Budgets"
exec python3 scripts/bench_budgets.py "$results"
