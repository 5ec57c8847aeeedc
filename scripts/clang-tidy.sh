#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Runs the curated checks of .clang-tidy over src/ (or the files named), with the compile commands of a build.
# GCC's precompiled headers mean nothing to clang, so the commands are first copied without them.
#
#   scripts/clang-tidy.sh [BUILD_DIR] [FILE...]      (default: build, every source file of src/)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
shift || true
[ -f "$build/compile_commands.json" ] || { echo "clang-tidy.sh: configure and build $build first" >&2; exit 1; }
mkdir -p "$build/tidy"
python3 - "$build/compile_commands.json" "$build/tidy/compile_commands.json" <<'PY'
import json, re, sys
commands = json.load(open(sys.argv[1]))
for entry in commands:
    if 'command' in entry:
        entry['command'] = re.sub(r'(-include \S*cmake_pch\S*|-Xclang -include-pch -Xclang \S+|-Winvalid-pch)', '',
                                  entry['command'])
json.dump(commands, open(sys.argv[2], 'w'))
PY
if [ $# -gt 0 ]; then
  exec clang-tidy -p "$build/tidy" --quiet "$@"
fi
mapfile -t files < <(find src -name '*.cpp' | sort)
if command -v run-clang-tidy >/dev/null; then
  exec run-clang-tidy -quiet -p "$build/tidy" -j "$(nproc)" "${files[@]/#/$PWD/}"
fi
exec clang-tidy -p "$build/tidy" --quiet "${files[@]}"
