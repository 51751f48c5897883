#!/usr/bin/env bash
# Fuzzes the text core: builds the libFuzzer targets (preset fuzz, clang with
# the address and undefined-behaviour sanitizers), replays each target's kept
# regression inputs, then runs it for SECONDS (default 30) on a fresh copy of
# its seeds under build/fuzz/work. One line per target; exits non-zero if any
# input failed. Findings are left in build/fuzz/work/<target>/findings.
set -euo pipefail

seconds=${1:-30}
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

targets=(inf_grammar inf_discovery command_line path_parts bounded_list cabinet_structure)
work=build/fuzz/work
# Sized for a 2-core machine with 24 GB that runs other builds beside: one
# fuzzing job at a time, a slow input is one over 10 s, and 2 GB of memory.
fuzz_flags=(-timeout=10 -rss_limit_mb=2048 -max_len=8192 -print_final_stats=1)

scripts/setup.sh >/dev/null
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz >/dev/null

rm -rf "$work"
failed=0
for target in "${targets[@]}"; do
  program=build/fuzz/bin/fuzz_$target
  dir=$work/$target
  mkdir -p "$dir/corpus" "$dir/findings" "$dir/regressions"
  cp -R "tests/fuzz/corpus/$target/." "$dir/corpus/"
  if [ "$target" = inf_grammar ]; then
    find tests/fixtures -iname '*.inf' -exec cp {} "$dir/corpus/" \;
  elif [ "$target" = inf_discovery ]; then
    find tests/fixtures tests/snapshots -iname '*.inf' -exec cp {} "$dir/corpus/" \;
  fi
  if [ -d "tests/fuzz/regressions/$target" ]; then
    cp -R "tests/fuzz/regressions/$target/." "$dir/regressions/"
  fi

  # Kept findings first: each must pass as it stands (-runs=0 only loads them).
  if ! "$program" -runs=0 "${fuzz_flags[@]}" "$dir/regressions" >"$dir/regressions.log" 2>&1; then
    echo "fuzz: $target: a kept regression input fails again, see $dir/regressions.log"
    failed=1
    continue
  fi

  status=0
  "$program" -max_total_time="$seconds" "${fuzz_flags[@]}" -artifact_prefix="$dir/findings/" \
    "$dir/corpus" >"$dir/fuzz.log" 2>&1 || status=$?
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$dir/fuzz.log" | tail -1)
  coverage=$(sed -n 's/.* cov: \([0-9]*\) .*/\1/p' "$dir/fuzz.log" | tail -1)
  findings=$(find "$dir/findings" -type f | wc -l)
  echo "fuzz: $target: ${runs:-?} runs in ${seconds}s, coverage ${coverage:-?}, corpus $(ls "$dir/corpus" | wc -l), findings $findings"
  if [ "$status" -ne 0 ] || [ "$findings" -ne 0 ]; then
    echo "fuzz: $target: FAILED (exit $status), log $dir/fuzz.log"
    find "$dir/findings" -type f -printf '  %p\n'
    failed=1
  fi
done
exit "$failed"
