#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Removes what scripts/install.sh installed (for this user, or with --system for the machine): exactly the
# files of its manifest, the bundle, and the agent's autostart entry. Running copies are asked to quit first.
# Preferences ($XDG_CONFIG_HOME/corvex) and logs ($XDG_DATA_HOME/Corvex/Logs) stay.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/install-common.sh

system=0
case "${1:-}" in
  "") ;;
  --system) system=1 ;;
  *) echo "usage: scripts/uninstall.sh [--system]" >&2; exit 2 ;;
esac
corvex_layout "$system"

if [ ! -f "$manifest" ]; then
  echo "Corvex is not installed here (no $manifest): nothing to remove."
  exit 0
fi
mapfile -t installed <"$manifest"
bundle=""
for path in "${installed[@]}"; do
  case "$path" in */Corvex.app) bundle=$path ;; esac
done

if [ -n "$bundle" ] && [ -d "$bundle" ]; then
  corvex_quit_running "$bundle" || fail "Corvex running from '$bundle' did not quit: quit it and uninstall again"
fi

# The agent's autostart entries that start it from this bundle (user installs only: the entries are per user).
autostart="${XDG_CONFIG_HOME:-$HOME/.config}/autostart"
if [ "$system" -eq 0 ] && [ -n "$bundle" ] && [ -d "$autostart" ]; then
  while IFS= read -r -d '' entry; do
    if grep -qF "$bundle/" "$entry"; then rm -f "$entry"; fi
  done < <(find "$autostart" -maxdepth 1 -name '*.desktop' -print0)
fi

for path in "${installed[@]}"; do
  [ -n "$path" ] || continue
  if [ "$path" = "$bundle" ]; then
    rm -rf "$path"
  elif [ -f "$path" ] || [ -L "$path" ]; then
    rm -f "$path"
  fi
done
rm -f "$manifest"
rmdir "$(dirname "$manifest")" 2>/dev/null || true

# The qzcv handler this install made the default.
mimeapps="${XDG_CONFIG_HOME:-$HOME/.config}/mimeapps.list"
if [ "$system" -eq 0 ] && [ -f "$mimeapps" ]; then
  sed -i '/^x-scheme-handler\/qzcv=com\.ostrel\.Corvex\.desktop;\{0,1\}$/d' "$mimeapps"
  # A list that held nothing but this handler goes with it.
  if ! grep -qv '^\(\[.*\]\)\{0,1\}[[:space:]]*$' "$mimeapps"; then
    rm -f "$mimeapps"
  fi
fi
# Folders left empty by the removal (never the folders of the user's own files).
for path in "${installed[@]}"; do
  dir=$(dirname "$path")
  while [ "$dir" != "/" ] && [ "$dir" != "$HOME" ] && [ "$dir" != "$data_dir" ] && [ "$dir" != "$bin_dir" ] &&
    rmdir "$dir" 2>/dev/null; do
    dir=$(dirname "$dir")
  done
done
corvex_refresh_databases
# A desktop database that indexes nothing any more goes too.
cache="$data_dir/applications/mimeinfo.cache"
if [ -f "$cache" ] && ! grep -qv '^\(\[MIME Cache\]\)\{0,1\}[[:space:]]*$' "$cache"; then
  rm -f "$cache"
  rmdir "$data_dir/applications" 2>/dev/null || true
fi
echo "Corvex removed${bundle:+ ($bundle)}. Preferences and logs are kept."
