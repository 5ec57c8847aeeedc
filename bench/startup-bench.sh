#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Start-up of `corvex` for a command that touches no PDF, side by side with a bare QCoreApplication that
# prints one line (bench/reference/bare_core_app.cpp, compiled here): median wall time and peak memory of
# RUNS whole processes each, and the ratios: version comparison and a preference read, both built into
# `corvex`. Then a command of the commands module (which brings the core) that reads a PDF, and so also loads
# the PDF module.
#
#   bench/startup-bench.sh [BUILD_DIR] [RUNS]      (defaults: build, 10)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build} runs=${2:-10}
corvex=$build/bin/corvex
[ -x "$corvex" ] || { echo "startup-bench: build $corvex first" >&2; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A home of its own: the PDF case stores a renaming pattern.
export HOME=$work XDG_CONFIG_HOME=$work/.config XDG_DATA_HOME=$work/.local/share XDG_RUNTIME_DIR=$work/runtime
mkdir -p "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
c++ -O2 -fPIC $(pkg-config --cflags Qt6Core) bench/reference/bare_core_app.cpp -o "$work/bare" \
  $(pkg-config --libs Qt6Core)

# Prints "median-milliseconds median-KiB" of the command run $runs times (the time includes /usr/bin/time's
# own start, alike for every command).
measure() {
  local times=() sizes=()
  for _ in $(seq "$runs"); do
    local start=$EPOCHREALTIME
    /usr/bin/time -o "$work/time" -f "%M" "$@" >/dev/null 2>&1 || true
    t=$(python3 -c "print(f'{($EPOCHREALTIME - $start) * 1000:.1f}')")
    m=$(tail -1 "$work/time")
    times+=("$t") sizes+=("$m")
  done
  printf '%s %s\n' "$(printf '%s\n' "${times[@]}" | sort -g | sed -n "$(( (runs + 1) / 2 ))p")" \
    "$(printf '%s\n' "${sizes[@]}" | sort -g | sed -n "$(( (runs + 1) / 2 ))p")"
}

read -r bare_t bare_m < <(measure "$work/bare")
read -r cli_t cli_m < <(measure "$corvex" version-compare 1.0 2.0)
python3 - "$work" "$corvex" >/dev/null <<'PY'
import sys, zlib, struct
# A 64 by 48 PNG for the PDF case.
w, h = 64, 48
raw = b''.join(b'\x00' + bytes([30, 120, 200]) * w for _ in range(h))
def chunk(t, d): return struct.pack('>I', len(d)) + t + d + struct.pack('>I', zlib.crc32(t + d) & 0xffffffff)
png = b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', w, h, 8, 2, 0, 0, 0)) + chunk(b'IDAT', zlib.compress(raw)) + chunk(b'IEND', b'')
open(sys.argv[1] + '/page.png', 'wb').write(png)
PY
"$corvex" rename "$work/page.png" "$work/page.pdf" >/dev/null
"$corvex" defaults write com.ostrel.Corvex autoRenameFormat '$Dimensions1$'
read -r pdf_t pdf_m < <(measure "$corvex" name "$work/page.pdf")
read -r defaults_t defaults_m < <(measure "$corvex" defaults read com.ostrel.Corvex autoRenameFormat)

printf '%-34s %8s %9s\n' "" "ms" "peak KiB"
printf '%-34s %8s %9s\n' "bare QCoreApplication (reference)" "$bare_t" "$bare_m"
printf '%-34s %8s %9s   %s x time, %s x memory\n' "corvex version-compare" "$cli_t" "$cli_m" \
  "$(python3 -c "print(round($cli_t / max($bare_t, 0.001), 2))")" "$(python3 -c "print(round($cli_m / $bare_m, 2))")"
printf '%-34s %8s %9s   %s x time, %s x memory\n' "corvex defaults read" "$defaults_t" \
  "$defaults_m" "$(python3 -c "print(round($defaults_t / max($bare_t, 0.001), 2))")" \
  "$(python3 -c "print(round($defaults_m / $bare_m, 2))")"
printf '%-34s %8s %9s   (loads the commands and the PDF module)\n' "corvex name page.pdf (its size)" "$pdf_t" \
  "$pdf_m"
printf 'shared libraries: reference %s, corvex %s\n' "$(ldd "$work/bare" | wc -l)" "$(ldd "$corvex" | wc -l)"
