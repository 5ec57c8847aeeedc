#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Installs what is missing, builds Corvex and starts it on this machine: the agent (watching the desktop's
# screenshot folder) and the application. Without a display it runs them on a virtual one (Xvfb).
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

build_dir=${CORVEX_BUILD_DIR:-build}
cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build_dir" --parallel "$(nproc)" --target Corvex CorvexAgent corvex

start=(bash scripts/start-corvex.sh "$build_dir" "$@")
if [ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ]; then
  start=(dbus-run-session -- "${start[@]}")
fi
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "No display: starting Corvex on a virtual display (Xvfb)." >&2
  exec xvfb-run -a -s "-screen 0 1920x1080x24" "${start[@]}"
fi
exec "${start[@]}"
