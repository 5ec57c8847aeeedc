#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Starts a built Corvex in the current session: the agent in the background, then the application in the
# foreground. The agent is stopped when the application ends. Usage: start-corvex.sh BUILD_DIR [APP ARGS...]
set -euo pipefail

bundle="$1/Corvex.app"
shift
app="$bundle/Contents/MacOS/Corvex"
agent="$bundle/Contents/Helpers/CorvexAgent.app/Contents/MacOS/CorvexAgent"

if [ ! -x "$app" ]; then
  echo "start-corvex: $app is not built" >&2
  exit 1
fi

agent_pid=
if [ -x "$agent" ]; then
  "$agent" &
  agent_pid=$!
fi
status=0
"$app" "$@" || status=$?
if [ -n "$agent_pid" ]; then
  kill "$agent_pid" 2>/dev/null || true
  wait "$agent_pid" 2>/dev/null || true
fi
exit "$status"
