#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# What scripts/install.sh and scripts/uninstall.sh share: the installed layout, finding and quitting running
# copies of Corvex, refreshing the desktop's databases. Sourced, not run.

fail() {
  echo "${0##*/}: $*" >&2
  exit 1
}

# corvex_layout SYSTEM: the folders of a user (0) or system (1) install.
corvex_layout() {
  if [ "$1" -eq 1 ]; then
    [ "$(id -u)" -eq 0 ] || fail "--system changes /opt and /usr: run it as root (sudo)"
    apps_dir=/opt/Applications
    data_dir=/usr/share
    bin_dir=/usr/bin
    man_dir=/usr/share/man
    manifest=/var/lib/corvex/install-manifest
  else
    [ -n "${HOME:-}" ] && [ -d "$HOME" ] || fail "HOME is not set to a folder"
    apps_dir="$HOME/Applications"
    data_dir="${XDG_DATA_HOME:-$HOME/.local/share}"
    bin_dir="$HOME/.local/bin"
    man_dir="$data_dir/man"
    manifest="$data_dir/Corvex/install-manifest"
  fi
}

# corvex_pids_in FOLDER: the processes of this user whose program lies in the folder.
corvex_pids_in() {
  local exe pid
  for pid in /proc/[0-9]*; do
    exe=$(readlink "$pid/exe" 2>/dev/null) || continue
    case "$exe" in "$1"/*) echo "${pid#/proc/}" ;; esac
  done
}

# corvex_quit_running BUNDLE: asks every program running from the bundle to quit (SIGTERM, which Corvex
# answers with its orderly shut-down) and waits up to 15 seconds for them to end. False when one is left.
corvex_quit_running() {
  local pids pid tries=0
  pids=$(corvex_pids_in "$1")
  [ -z "$pids" ] && return 0
  echo "Asking Corvex running from $1 to quit (pids $(echo $pids))"
  for pid in $pids; do kill -TERM "$pid" 2>/dev/null || true; done
  while [ -n "$(corvex_pids_in "$1")" ]; do
    tries=$((tries + 1))
    [ $tries -gt 150 ] && return 1
    sleep 0.1
  done
  return 0
}

# corvex_refresh_databases: the launcher and scheme handler cache, and the icon cache where the theme has one.
corvex_refresh_databases() {
  if command -v update-desktop-database >/dev/null; then
    update-desktop-database -q "$data_dir/applications" 2>/dev/null || true
  fi
  if command -v gtk-update-icon-cache >/dev/null && [ -f "$data_dir/icons/hicolor/index.theme" ]; then
    gtk-update-icon-cache -q -f "$data_dir/icons/hicolor" 2>/dev/null || true
  fi
}
