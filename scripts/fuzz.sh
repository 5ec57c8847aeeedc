#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Builds the fuzz targets (the "fuzz" preset: clang with the fuzzer, address and undefined-behaviour
# sanitizers) and runs each one for a while on a copy of its seed corpus in tests/fuzz/<target>/.
#
#   scripts/fuzz.sh [SECONDS] [--keep] [TARGET...]
#
# SECONDS a target (default 60). Prints the executions per second of each target; exits non-zero when any
# target crashed, hung, leaked or tripped a sanitizer, after showing its report. --keep copies the inputs
# that did so into the target's seed folder, as regression cases. FUZZ_SEED=N makes a run repeatable (the
# same inputs in the same order, as far as the time allows); unset, every run explores anew.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=60 keep=0 only=()
for argument in "$@"; do
  case "$argument" in
    --keep) keep=1 ;;
    -h|--help) sed -n '4,12p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    ''|*[!0-9]*) only+=("$argument") ;;
    *) seconds=$argument ;;
  esac
done
if ! command -v clang++ >/dev/null; then
  echo "fuzz: clang is not installed (apt-get install clang)" >&2
  exit 2
fi

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --parallel "$(nproc)" >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
status=0
for binary in build-fuzz/fuzz/fuzz_*; do
  [ -f "$binary" ] && [ -x "$binary" ] || continue
  name=${binary##*/fuzz_}
  if [ ${#only[@]} -gt 0 ] && [[ ! " ${only[*]} " == *" $name "* ]]; then continue; fi
  corpus=$work/$name artifacts=$work/$name-artifacts/ log=$work/$name.log
  mkdir -p "$corpus" "$artifacts"
  [ -d "tests/fuzz/$name" ] && cp -r "tests/fuzz/$name/." "$corpus/"
  result=ok
  "$binary" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 -seed="${FUZZ_SEED:-0}" \
    -artifact_prefix="$artifacts" "$corpus" >"$log" 2>&1 || result=FAILED
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  runs=${runs:-0}
  printf '%-15s %-6s %9s runs in %ss, %6s/s\n' "$name" "$result" "$runs" "$seconds" "$((runs / seconds))"
  if [ "$result" != ok ]; then
    status=1
    { grep -E -m 40 'ERROR|SUMMARY|#[0-9]+ 0x|runtime error|Test unit written' "$log" || tail -20 "$log"; } |
      sed 's/^/    /'
    # The input itself, so that a run whose folder is gone (CI) can still be reproduced.
    for input in "$artifacts"*; do
      [ -f "$input" ] && echo "    input $(basename "$input"), base64: $(head -c 4096 "$input" | base64 -w0)"
    done
    if [ $keep = 1 ]; then
      mkdir -p "tests/fuzz/$name"
      cp "$artifacts"* "tests/fuzz/$name/" 2>/dev/null || true
    fi
  fi
done
exit $status
