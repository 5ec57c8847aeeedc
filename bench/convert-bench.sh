#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Times whole-process image conversions by `corvex rename` against ImageMagick's convert and libvips, on
# screenshot-like PNGs at 2880x1800 and 5120x2880: median wall time of RUNS runs, peak resident memory, output
# size, and PSNR against the source for lossy outputs. Run bench/install-peers.sh once first. The png-size
# line gives Corvex's PNG size as a ratio to ImageMagick's for the same pixels.
#
#   bench/convert-bench.sh BUILD_DIR [RUNS]
set -euo pipefail

build=${1:?usage: convert-bench.sh BUILD_DIR [RUNS]}
runs=${2:-5}
corvex="$build/bin/corvex"
psnr="$build/bin/bench_psnr"
for tool in "$corvex" "$psnr" "$build/bin/bench_make_screenshots" /usr/bin/convert /usr/bin/vips /usr/bin/time; do
  [ -x "$tool" ] || { echo "missing $tool (build the bench targets; run bench/install-peers.sh)" >&2; exit 1; }
done

work=$(mktemp -d /tmp/corvex-bench-XXXXXX)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME="$work/share" XDG_RUNTIME_DIR="$work/runtime" QT_QPA_PLATFORM=offscreen
mkdir -p "$XDG_DATA_HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
"$build/bin/bench_make_screenshots" "$work" >/dev/null

# run_one NAME INPUT OUTPUT COMMAND...: median seconds and peak KiB over the runs, output kept in $work/out.
run_one() {
  local name=$1 input=$2 output=$3; shift 3
  local times=() peak=0
  for ((i = 0; i < runs; i++)); do
    rm -rf "$work/run" "$XDG_DATA_HOME/Trash"
    mkdir -p "$work/run"
    cp "$input" "$work/run/"
    local start end rss
    start=$EPOCHREALTIME
    /usr/bin/time -f %M -o "$work/rss" "$@" >/dev/null 2>"$work/err" || { echo "$name failed: $(cat "$work/err")" >&2; return 1; }
    end=$EPOCHREALTIME
    rss=$(tail -1 "$work/rss")
    times+=("$(echo "$end - $start" | bc -l)")
    ((rss > peak)) && peak=$rss
  done
  mkdir -p "$work/out"
  cp "$work/run/$output" "$work/out/$name.${output##*.}"
  local median
  median=$(printf '%s\n' "${times[@]}" | sort -g | awk '{a[NR]=$1} END {print a[int((NR+1)/2)]}')
  echo "$median $peak $(stat -c %s "$work/run/$output")"
}

printf '%-10s %-9s %-8s %8s %6s %9s %10s %7s\n' size conversion tool seconds ratio peakMiB bytes PSNR
for size in 2880x1800 5120x2880; do
  png="$work/shot-$size.png"
  pdf="$work/shot-$size.pdf"
  cp "$png" "$work/pdfsrc.png"
  "$corvex" rename "$work/pdfsrc.png" "$pdf"
  for conversion in png-jpg png-gif png-tif pdf-png; do
    from=${conversion%-*} to=${conversion#*-}
    input=$([ "$from" = pdf ] && echo "$pdf" || echo "$png")
    base=$(basename "$input")
    out="out.$to"
    declare -A result=()
    result[corvex]=$(run_one "corvex-$size-$conversion" "$input" "$out" "$corvex" rename "$work/run/$base" "$work/run/$out")
    if [ "$from" != pdf ]; then # ImageMagick here has no PDF reader (no Ghostscript, PDF disabled by policy)
      result[convert]=$(run_one "im-$size-$conversion" "$input" "$out" /usr/bin/convert "$work/run/$base" "$work/run/$out")
    fi
    if [ "$to" = gif ]; then
      result[vips]=$(run_one "vips-$size-$conversion" "$input" "$out" vips gifsave "$work/run/$base" "$work/run/$out")
    else
      result[vips]=$(run_one "vips-$size-$conversion" "$input" "$out" vips copy "$work/run/$base" "$work/run/$out")
    fi
    fastest=$(for t in "${!result[@]}"; do [ "$t" = corvex ] || echo "${result[$t]%% *}"; done | sort -g | head -1)
    for tool in corvex convert vips; do
      [ -n "${result[$tool]:-}" ] || continue
      read -r seconds peak bytes <<<"${result[$tool]}"
      quality=-
      if [ "$to" = jpg ] || [ "$to" = gif ]; then
        quality=$("$psnr" "$png" "$work/out/$([ $tool = corvex ] && echo corvex || ([ $tool = convert ] && echo im || echo vips))-$size-$conversion.$to")
      fi
      printf '%-10s %-9s %-8s %8.3f %6.2f %9.1f %10d %7s\n' "$size" "$conversion" "$tool" "$seconds" \
        "$(echo "$seconds / $fastest" | bc -l)" "$(echo "$peak / 1024" | bc -l)" "$bytes" "$quality"
    done
    unset result
  done
  # The PNG encoder against ImageMagick's on the same pixels: Corvex's rendered page, encoded again by convert.
  ours="$work/out/corvex-$size-pdf-png.png"
  /usr/bin/convert "$ours" "$work/out/im-$size-reencoded.png"
  printf '%-10s %-9s %-8s %8s %6.2f %9s %10d %7s\n' "$size" png-size convert - \
    "$(echo "$(stat -c %s "$ours") / $(stat -c %s "$work/out/im-$size-reencoded.png")" | bc -l)" - \
    "$(stat -c %s "$work/out/im-$size-reencoded.png")" -
done
