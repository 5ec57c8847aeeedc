#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Starts a built Corvex in the current session: the agent, then the application; returns when the agent ends
# (it watches for screenshots until it is stopped, e.g. by Ctrl+C).
# Usage: start-corvex.sh BUILD_DIR [APPLICATION ARGUMENTS...]
set -euo pipefail

bundle="$1/Corvex.app"
shift
app="$bundle/Contents/MacOS/Corvex"
agent="$bundle/Contents/Helpers/CorvexAgent.app/Contents/MacOS/CorvexAgent"

if [ ! -x "$app" ]; then
  echo "start-corvex: $app is not built" >&2
  exit 1
fi

# A session without a runtime folder (a bare console, a container) gets a private one, as Qt would make.
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
  export XDG_RUNTIME_DIR="/tmp/runtime-$(id -u)"
  mkdir -p "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
fi

if [ ! -x "$agent" ]; then
  exec "$app" "$@"
fi
# The application comes and goes (it quits after its last renaming window, and the agent starts it again for
# the next screenshot); the agent stays for the whole session.
"$agent" &
agent_pid=$!
"$app" "$@" &
wait "$agent_pid"
