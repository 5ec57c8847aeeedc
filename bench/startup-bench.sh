#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Start-up of `corvex`, command by command, side by side with a bare QCoreApplication that prints one line
# (bench/reference/bare_core_app.cpp, compiled here). The commands that work on images link Qt Gui, whose
# libraries alone cost what a second reference shows (bench/reference/bare_image_app.cpp: the same with one
# QImage). All run in turn, RUNS rounds, each a whole process under /usr/bin/time; printed per case: the
# median and 90th percentile wall time, the median peak memory, the ratios of both medians to the bare
# reference's, and the shared objects it loaded.
# Without a session bus the script runs itself under dbus-run-session, for the notification command.
#
#   bench/startup-bench.sh [BUILD_DIR] [RUNS]      (defaults: build, 15)
set -euo pipefail
cd "$(dirname "$0")/.."
if [ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ]; then
  exec dbus-run-session -- "$0" "$@"
fi
build=${1:-build} runs=${2:-15}
corvex=$build/bin/corvex
[ -x "$corvex" ] || { echo "startup-bench: build $corvex first" >&2; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A home of its own: the naming cases store a renaming pattern.
export HOME=$work XDG_CONFIG_HOME=$work/.config XDG_DATA_HOME=$work/.local/share XDG_RUNTIME_DIR=$work/runtime
mkdir -p "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
c++ -O2 -fPIC $(pkg-config --cflags Qt6Core) bench/reference/bare_core_app.cpp -o "$work/bare" \
  $(pkg-config --libs Qt6Core)
c++ -O2 -fPIC $(pkg-config --cflags Qt6Gui) bench/reference/bare_image_app.cpp -o "$work/bare-image" \
  $(pkg-config --libs Qt6Gui)

python3 - "$work" <<'PY'
import sys, zlib, struct
# A 64 by 48 PNG for the naming cases.
w, h = 64, 48
raw = b''.join(b'\x00' + bytes([30, 120, 200]) * w for _ in range(h))
def chunk(t, d): return struct.pack('>I', len(d)) + t + d + struct.pack('>I', zlib.crc32(t + d) & 0xffffffff)
png = b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', w, h, 8, 2, 0, 0, 0)) + chunk(b'IDAT', zlib.compress(raw)) + chunk(b'IEND', b'')
open(sys.argv[1] + '/page.png', 'wb').write(png)
open(sys.argv[1] + '/archive.tar.xz', 'wb').write(b'not an archive')
open(sys.argv[1] + '/archive.tar.xz.sig', 'w').write('AAAA')
PY
"$corvex" rename "$work/page.png" "$work/copy.png" >/dev/null && cp "$work/copy.png" "$work/page.png"
"$corvex" rename "$work/copy.png" "$work/page.pdf" >/dev/null
"$corvex" defaults write com.ostrel.Corvex autoRenameFormat '$Dimensions1$'

python3 - "$work" "$corvex" "$runs" <<'PY'
import os, statistics, subprocess, sys, time
work, corvex, runs = sys.argv[1], sys.argv[2], int(sys.argv[3])
cases = [
    ("bare QCoreApplication (reference)", [f"{work}/bare"]),
    ("corvex help", [corvex, "help"]),
    ("corvex version-compare 1.0 2.0", [corvex, "version-compare", "1.0", "2.0"]),
    ("corvex defaults read DOMAIN KEY", [corvex, "defaults", "read", "com.ostrel.Corvex", "autoRenameFormat"]),
    ("corvex watch (a missing path)", [corvex, "watch", f"{work}/missing"]),
    ("corvex notifications post NAME", [corvex, "notifications", "post", "CorvexStartupBench", "n=1"]),
    ("corvex update verify (bad signature)", [corvex, "update", "verify", f"{work}/archive.tar.xz", "--key",
                                              "A" * 43 + "="]),
    ("bare QCoreApplication with a QImage", [f"{work}/bare-image"]),
    ("corvex about", [corvex, "about"]),
    ("corvex name page.png", [corvex, "name", f"{work}/page.png"]),
    ("corvex name page.pdf", [corvex, "name", f"{work}/page.pdf"]),
]
times = {name: [] for name, _ in cases}
sizes = {name: [] for name, _ in cases}
for _ in range(runs):
    for name, command in cases:
        start = time.perf_counter()
        subprocess.run(["/usr/bin/time", "-o", f"{work}/time", "-f", "%M"] + command,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        times[name].append((time.perf_counter() - start) * 1000)
        sizes[name].append(int(open(f"{work}/time").read().split()[-1]))

def loaded(command):
    env = dict(os.environ, LD_DEBUG="files")
    out = subprocess.run(command, env=env, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True).stderr
    return len({line.split("file=")[1].split()[0] for line in out.splitlines()
                if "file=" in line and "[0];" in line and ("needed by" in line or "dynamically loaded" in line)})

def p90(values):
    return sorted(values)[min(len(values) - 1, int(round(0.9 * (len(values) - 1))))]

reference = cases[0][0]
bare_t, bare_m = statistics.median(times[reference]), statistics.median(sizes[reference])
print(f"{runs} rounds; times include /usr/bin/time's own start, alike for every case")
print(f"{'':40} {'median ms':>9} {'p90 ms':>7} {'peak KiB':>9} {'x time':>7} {'x memory':>8} {'objects':>7}")
for name, command in cases:
    t, m = statistics.median(times[name]), statistics.median(sizes[name])
    print(f"{name:40} {t:9.1f} {p90(times[name]):7.1f} {m:9.0f} {t / bare_t:7.2f} {m / bare_m:8.2f} "
          f"{loaded(command):7d}")
PY
