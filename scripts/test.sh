#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Installs what is missing, configures, builds and runs every test: on a private D-Bus session bus, on Qt's
# offscreen platform, each test in a temporary home of its own. Needs no display.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

build_dir=${CORVEX_BUILD_DIR:-build}
werror=OFF
[ "${CI:-}" = "true" ] && werror=ON
cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCORVEX_WARNINGS_AS_ERRORS=$werror >/dev/null
cmake --build "$build_dir" --parallel "$(nproc)"

export QT_QPA_PLATFORM=offscreen
unset DISPLAY WAYLAND_DISPLAY
exec dbus-run-session -- ctest --test-dir "$build_dir" --output-on-failure --parallel "$(nproc)" "$@"
