#!/usr/bin/env bash
# Fuzzes everything that reads bytes from outside, all targets side by side: fuzz.sh SECONDS [TARGET...]
# Starts from fuzzers/corpus, the MCP transcripts and the golden files. Inputs that reach something new are kept in
# fuzzers/corpus, small and few; inputs that fail stay in build/fuzz/findings/TARGET.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:?usage: fuzz.sh SECONDS [TARGET...]}
shift
targets=("$@")
if [ ${#targets[@]} = 0 ]; then
  for source in fuzzers/*Fuzzer.cpp; do targets+=("$(basename "$source" .cpp)"); done
fi
scripts/setup.sh
scripts/build.sh fuzz "${targets[@]}"

work=$PWD/build/fuzz/work
findings=$PWD/build/fuzz/findings
seeds=$work/seeds
largest=4096   # bytes of an input that is kept
most=200       # inputs a target
allowance=55   # kilobytes a target

# What a client writes, line by line and a conversation at a time.
plant_messages() {
  local transcript name
  for transcript in tests/mcp/transcripts/*.txt; do
    name=$(basename "$transcript" .txt)
    sed -n 's/^> //p' "$transcript" >"$seeds/McpFuzzer/$name"
    split -l 1 "$seeds/McpFuzzer/$name" "$seeds/McpFuzzer/$name-"
  done
}

# plant_files TARGET FILE...
plant_files() {
  local target=$1 file
  shift
  [ -d "$seeds/$target" ] || return 0
  for file in "$@"; do cp "$file" "$seeds/$target/${file//\//-}"; done
}

plant() {
  local target
  rm -rf "$seeds"
  for target in "${targets[@]}"; do
    mkdir -p "$seeds/$target" "$work/$target" "$findings/$target" "fuzzers/corpus/$target"
  done
  if [ -d "$seeds/McpFuzzer" ]; then plant_messages; fi
  plant_files JsonFuzzer tests/data/{records,requests,responses,stores}/*.json
  plant_files FrameFuzzer tests/data/requests/*.json tests/data/local-control/*.frame
  plant_files SettingsFuzzer tests/data/stores/settings.json
  plant_files HistoryFuzzer tests/data/stores/history.json
  plant_files AutostartEntryFuzzer packaging/linux/*.desktop
  # Every key and every word of the golden files, which mutation alone would hardly guess.
  grep -ohE '"[A-Za-z_]{2,40}"' -r tests/data --include='*.json' | sort -u >"$work/words.dict"
}

# What failed once and no longer does is forgotten.
forget_mended() {
  local target=$1 file
  for file in "$findings/$target"/*; do
    [ -e "$file" ] || continue
    if "build/fuzz/bin/$target" "$file" >/dev/null 2>&1; then rm "$file"; fi
  done
}

fuzz() {
  local target=$1
  "build/fuzz/bin/$target" -max_total_time="$seconds" -max_len=65536 -timeout=30 -rss_limit_mb=3000 -reload=0 \
    -dict="$work/words.dict" -artifact_prefix="$findings/$target/" -print_final_stats=1 \
    "$work/$target" "fuzzers/corpus/$target" "$seeds/$target" >"$work/$target.log" 2>&1
}

# Chooses the corpus anew from all that is known: the inputs that cover most, as far as they are small and few. Inputs
# with a name of their own, which people gave them, stay in any case.
keep() {
  local target=$1 corpus=fuzzers/corpus/$1 fresh=$work/$1.fresh file count bytes
  rm -rf "$fresh"
  mkdir "$fresh"
  if ! "build/fuzz/bin/$target" -merge=1 -set_cover_merge=1 -max_len=$largest "$fresh" "$corpus" "$seeds/$target" \
      "$work/$target" >"$work/$target.merge" 2>&1; then
    echo "      $target: the corpus stays as it is; see $work/$target.merge"
    return
  fi
  find "$corpus" -type f -regextype egrep -regex '.*/[0-9a-f]{40}' -delete
  for file in "$corpus"/*; do rm -f "$fresh/$(sha1sum <"$file" | cut -d' ' -f1)"; done
  count=$(find "$corpus" -type f | wc -l)
  bytes=$(du -b "$corpus" | cut -f1)
  # They were written in the order in which they were chosen.
  while read -r file; do
    count=$((count + 1))
    bytes=$((bytes + $(stat -c %s "$file")))
    if [ $count -gt $most ] || [ $bytes -gt $((allowance * 1024)) ]; then break; fi
    cp "$file" "$corpus"
  done < <(find "$fresh" -type f -printf '%T@ %p\n' | sort -n | cut -d' ' -f2-)
}

plant
running=()
trap 'kill "${running[@]}" 2>/dev/null || true' EXIT
for target in "${targets[@]}"; do
  forget_mended "$target"
  fuzz "$target" &
  running+=($!)
done

passed=0
failed=0
printf '%-20s %14s %10s %10s %9s\n' target executions coverage corpus findings
for index in "${!targets[@]}"; do
  target=${targets[index]}
  status=0
  wait "${running[index]}" || status=$?
  keep "$target"
  log=$work/$target.log
  executions=$(sed -n 's/^stat::number_of_executed_units: //p' "$log" | tail -n 1)
  coverage=$(sed -nE 's/.* cov: ([0-9]+) .*/\1/p' "$log" | tail -n 1)
  count=$(find "$findings/$target" -type f | wc -l)
  kept=$(find "fuzzers/corpus/$target" -type f | wc -l)
  printf '%-20s %14s %10s %10s %9s\n' "$target" "${executions:-?}" "${coverage:-?}" "$kept" "$count"
  if [ "$status" = 0 ] && [ "$count" = 0 ] && [ "${executions:-0}" -gt 0 ]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    grep -E 'SUMMARY|ERROR|deadly signal' "$log" | head -n 3 | sed 's/^/      /'
  fi
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
