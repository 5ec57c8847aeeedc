#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Measures the agent of a build (default: build/) in a home and on a session bus of its own:
# screenshot-to-notification latency, then a quiet minute's CPU time, wake-ups and memory.
#   bench/agent_bench.sh [BUILD_DIR] [--shots N] [--idle SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir=${1:-build}
shift || true
cmake --build "$build_dir" --target CorvexAgent corvex bench_agent_latency >/dev/null

root=$(mktemp -d /tmp/corvex-agent-bench-XXXXXX)
trap 'rm -rf "$root"' EXIT
export HOME="$root/home" XDG_CONFIG_HOME="$root/home/.config" XDG_DATA_HOME="$root/home/.local/share"
export XDG_CACHE_HOME="$root/home/.cache" XDG_RUNTIME_DIR="$root/runtime" QT_QPA_PLATFORM=offscreen
mkdir -p "$HOME" "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
unset XDG_CURRENT_DESKTOP DISPLAY WAYLAND_DISPLAY
build_abs=$(cd "$build_dir" && pwd)
dbus-run-session -- "$build_abs/bin/bench_agent_latency" "$@" 2> >(grep -v 'Failed to set fd limit' >&2)
