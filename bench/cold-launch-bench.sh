#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Cold launch of the application with a 2880 by 1800 PNG on its command line, until its window has painted the
# picture, side by side with a minimal Qt Widgets program that opens the same PNG in a label
# (bench/reference/label_window.cpp, compiled here). Both programs, given CORVEX_BENCH_PAINTED_FD, write a line
# to that descriptor when they first paint the picture; the time from starting the program to that line is
# taken. Under Xvfb, in a home and on a session bus of its own, with the agent already running as it is in a
# user's session (the application finds it and starts none). Medians and 90th percentiles of RUNS launches
# each, the two programs taking turns.
#
#   bench/cold-launch-bench.sh [BUILD_DIR] [RUNS]      (defaults: build, 10)
set -euo pipefail
cd "$(dirname "$0")/.."
if [ -z "${CORVEX_BENCH_INNER:-}" ]; then
  export CORVEX_BENCH_INNER=1
  exec xvfb-run -a -s "-screen 0 1920x1080x24" dbus-run-session -- bash "$0" "$@"
fi
build=${1:-build} runs=${2:-10}
app=$(cd "$build" && pwd)/Corvex.app/Contents/MacOS/Corvex
[ -x "$app" ] || { echo "cold-launch-bench: build $app first" >&2; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work XDG_CONFIG_HOME=$work/.config XDG_DATA_HOME=$work/.local/share XDG_RUNTIME_DIR=$work/runtime
mkdir -p "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
c++ -O2 -fPIC $(pkg-config --cflags Qt6Widgets) bench/reference/label_window.cpp -o "$work/reference" \
  $(pkg-config --libs Qt6Widgets)
python3 - "$work/shot.png" <<'PY'
import sys, zlib, struct
w, h = 2880, 1800
rows = bytearray()
for y in range(h):
    rows += b'\x00' + bytes((x * 7 + y) % 256 for x in range(0, w * 3, 1))[: w * 3]
def chunk(t, d): return struct.pack('>I', len(d)) + t + d + struct.pack('>I', zlib.crc32(t + d) & 0xffffffff)
png = b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', w, h, 8, 2, 0, 0, 0)) + \
      chunk(b'IDAT', zlib.compress(bytes(rows), 6)) + chunk(b'IEND', b'')
open(sys.argv[1], 'wb').write(png)
PY
# No first-run questions: the application as a user who has used it before meets it.
corvex=$(cd "$build" && pwd)/bin/corvex
"$corvex" defaults write com.ostrel.Corvex firstRunVers2 -bool NO >/dev/null
"$corvex" defaults write com.ostrel.Corvex hasAskedToStartAtLogIn -bool YES >/dev/null
"$corvex" defaults write com.ostrel.Corvex startAtLogIn -bool NO >/dev/null
"$corvex" defaults write com.ostrel.Corvex SUHasLaunchedBefore -bool YES >/dev/null
"$corvex" defaults write com.ostrel.Corvex SUEnableAutomaticChecks -bool NO >/dev/null
"$corvex" defaults write com.ostrel.Corvex moveToApplicationsFolderAlertSuppress -bool YES >/dev/null

# The agent of this build runs for the whole benchmark, as in a user's session.
"$(cd "$build" && pwd)/Corvex.app/Contents/Helpers/CorvexAgent.app/Contents/MacOS/CorvexAgent" \
  >"$work/agent.log" 2>&1 &
agent=$!
trap 'kill "$agent" 2>/dev/null; wait "$agent" 2>/dev/null; rm -rf "$work"' EXIT

# Milliseconds from starting the program to its first paint of the picture.
launch() {
  local start end pid line
  rm -f "$work/painted" && mkfifo "$work/painted"
  exec 4<>"$work/painted"
  start=$EPOCHREALTIME
  CORVEX_BENCH_PAINTED_FD=3 "$@" 3>"$work/painted" >"$work/launch.log" 2>&1 &
  pid=$!
  if ! read -r -t 30 -u 4 line; then
    echo "cold-launch-bench: $1 painted no picture" >&2
    kill "$pid" 2>/dev/null
    return 1
  fi
  end=$EPOCHREALTIME
  exec 4<&-
  python3 -c "print(f'{($end - $start) * 1000:.0f}')"
  kill "$pid" 2>/dev/null
  wait "$pid" 2>/dev/null || true
}
stats() { sort -n | awk '{a[NR]=$1} END {m=a[int((NR+1)/2)]; p=a[int(NR*0.9+0.999)]; printf "%s %s\n", m, p}'; }

: >"$work/ref.ms"
: >"$work/cold.ms"
launch "$app" -filePath "$work/shot.png" -screenNum 1 >/dev/null # the agent's first start is not counted
for _ in $(seq "$runs"); do
  launch "$work/reference" "$work/shot.png" >>"$work/ref.ms"
  launch "$app" -filePath "$work/shot.png" -screenNum 1 >>"$work/cold.ms"
done
read -r ref_median ref_p90 < <(stats <"$work/ref.ms")
read -r cold_median cold_p90 < <(stats <"$work/cold.ms")
printf '%-44s %7s %7s\n' "start to picture painted" "median" "p90"
printf '%-44s %5s ms %4s ms\n' "reference: QLabel with the PNG" "$ref_median" "$ref_p90"
printf '%-44s %5s ms %4s ms   %s x\n' "Corvex -filePath shot.png (2880x1800)" "$cold_median" "$cold_p90" \
  "$(python3 -c "print(round($cold_median / $ref_median, 2))")"
