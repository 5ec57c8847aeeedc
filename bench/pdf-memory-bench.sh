#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Whole-process peak resident memory of converting a screenshot saved as PDF to PNG (`corvex rename page.pdf
# out.png`), for pages of one picture at one pixel per point (page), and for the pictures at 96 dpi, scaled
# into a page of 3/4 their size: as Corvex writes them, the page rounded to whole points (scaled), and on a
# page of their exact size, fractions of a point kept (exact: 1366x768 makes 1024.5x576 points). Pictures of
# 2880x1800 and 5120x2880, and of 1366x768 and 5118x2878, whose pages at 96 dpi are not whole points. The
# baseline is the same process converting a 16x16 page: the program with poppler loaded. ratio = (peak -
# baseline) / page bytes (width x height x 4, the rendered page: the media box rounded to whole pixels).
# Median of RUNS runs. The route column says whether the page's image was decoded row by row into the page
# (straight at one pixel per point, a band of rows at a time when scaled) or the page drawn by poppler's
# renderer, and that decoded pixels are the same as drawn ones.
#
#   bench/pdf-memory-bench.sh BUILD_DIR [RUNS]
set -euo pipefail

build=${1:?usage: pdf-memory-bench.sh BUILD_DIR [RUNS]}
runs=${2:-5}
corvex="$build/bin/corvex"
helper="$build/bin/bench_pdf_page"
for tool in "$corvex" "$helper" "$build/bin/bench_make_screenshots" /usr/bin/time; do
  [ -x "$tool" ] || { echo "missing $tool (configure with -DCORVEX_BUILD_BENCH=ON, build the bench targets)" >&2; exit 1; }
done

work=$(mktemp -d /tmp/corvex-pdf-bench-XXXXXX)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME="$work/share" XDG_RUNTIME_DIR="$work/runtime" QT_QPA_PLATFORM=offscreen
mkdir -p "$XDG_DATA_HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
sizes=(16x16 2880x1800 5120x2880 1366x768 5118x2878)
"$build/bin/bench_make_screenshots" "$work" "${sizes[@]}" >/dev/null
for size in "${sizes[@]}"; do
  "$helper" make "$work/shot-$size.png" "$work/page-$size.pdf"
  # The picture as it is written, at 96 dpi.
  cp "$work/shot-$size.png" "$work/scaled-$size.png"
  "$corvex" rename "$work/scaled-$size.png" "$work/scaled-$size.pdf"
  "$helper" exact "$work/shot-$size.png" "$work/exact-$size.pdf" 96
done

# peak PDF: the median over the runs of the conversion's peak resident KiB.
peak() {
  local pdf=$1 peaks=()
  for ((i = 0; i < runs; i++)); do
    rm -rf "$work/run" "$XDG_DATA_HOME/Trash"
    mkdir -p "$work/run"
    cp "$pdf" "$work/run/page.pdf"
    /usr/bin/time -f %M -o "$work/rss" "$corvex" rename "$work/run/page.pdf" "$work/run/out.png" >/dev/null \
      2>"$work/err" || { echo "converting $pdf failed: $(cat "$work/err")" >&2; exit 1; }
    peaks+=("$(tail -1 "$work/rss")")
  done
  printf '%s\n' "${peaks[@]}" | sort -n | awk '{a[NR]=$1} END {print a[int((NR+1)/2)]}'
}

baseline=$(peak "$work/page-16x16.pdf")
printf 'baseline (16x16 page): %.1f MiB\n' "$(echo "$baseline / 1024" | bc -l)"
printf '%-8s %-10s %-10s %9s %9s %7s  %s\n' page picture pagePixels pageMiB peakMiB ratio route
for size in "${sizes[@]:1}"; do
  for kind in page scaled exact; do
    pdf="$work/$kind-$size.pdf"
    route=$("$helper" compare "$pdf") || { echo "$pdf: $route" >&2; exit 1; }
    pixels=$(grep -ao '/MediaBox \[[^]]*\]' "$pdf" | head -1 | awk '{printf "%dx%d", $4 + 0.5, $5 + 0.5}')
    bytes=$(echo "$pixels" | awk -Fx '{print $1 * $2 * 4}')
    kib=$(peak "$pdf")
    printf '%-8s %-10s %-10s %9.1f %9.1f %7.2f  %s\n' "$kind" "$size" "$pixels" "$(echo "$bytes / 1048576" | bc -l)" \
      "$(echo "$kib / 1024" | bc -l)" "$(echo "($kib - $baseline) * 1024 / $bytes" | bc -l)" "$route"
  done
done
