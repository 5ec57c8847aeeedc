#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# A screenshot closed in the watched folder -> the renaming window on screen with its picture, the
# application not running (the agent starts it cold): under Xvfb, in a home and on a session bus of its own.
#   bench/agent-to-window-bench.sh [BUILD_DIR] [RUNS] [WIDTH HEIGHT]     (defaults: build, 10, 5120 2880)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
shift || true
cmake --build "$build" --target Corvex CorvexAgent corvex bench_app_agent_to_window >/dev/null
build_abs=$(cd "$build" && pwd)
root=$(mktemp -d /tmp/corvex-window-bench-XXXXXX)
trap 'rm -rf "$root"' EXIT
export HOME="$root/home" XDG_CONFIG_HOME="$root/home/.config" XDG_DATA_HOME="$root/home/.local/share"
export XDG_CACHE_HOME="$root/home/.cache" XDG_RUNTIME_DIR="$root/runtime"
mkdir -p "$HOME" "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
unset XDG_CURRENT_DESKTOP WAYLAND_DISPLAY QT_QPA_PLATFORM
xvfb-run -a -s "-screen 0 2560x1600x24" dbus-run-session -- "$build_abs/bin/bench_app_agent_to_window" "$@" \
  2> >(grep -v 'Failed to set fd limit' >&2)
