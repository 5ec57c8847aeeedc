#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Builds Corvex and installs it for this user, or with --system (as root) for every user of the machine:
#
#   user:    ~/Applications/Corvex.app, launcher, icons, metainfo, man page and completion under
#            $XDG_DATA_HOME (~/.local/share), `corvex` linked into ~/.local/bin
#   system:  /opt/Applications/Corvex.app, the same files under /usr/share, `corvex` linked into /usr/bin
#
# Running copies of an installed Corvex are asked to quit first (a running agent is started again afterwards).
# The bundle is replaced in one step: when anything fails, the previous install stays as it was. Everything
# installed is listed in a manifest that scripts/uninstall.sh reads. Preferences and logs are never touched.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/install-common.sh

usage() {
  echo "usage: scripts/install.sh [--system] [--build-dir DIR]" >&2
  exit 2
}

system=0
build_dir=${CORVEX_BUILD_DIR:-build}
while [ $# -gt 0 ]; do
  case "$1" in
    --system) system=1 ;;
    --build-dir) [ $# -ge 2 ] || usage; build_dir=$2; shift ;;
    -h | --help) usage ;;
    *) echo "install.sh: unknown option '$1'" >&2; usage ;;
  esac
  shift
done

corvex_layout "$system"
bundle="$apps_dir/Corvex.app"
case "$bundle" in
  *[\"\$\`\\]*) fail "cannot install into '$apps_dir': a launcher cannot name a path with \", \$, \` or \\ in it" ;;
esac

# The target folders must be folders this user can write (or create).
for dir in "$apps_dir" "$data_dir" "$bin_dir" "$(dirname "$manifest")"; do
  if [ -e "$dir" ] && [ ! -d "$dir" ]; then
    fail "'$dir' is a file, not a folder: move it away and install again"
  fi
  mkdir -p "$dir" 2>/dev/null || fail "cannot create the folder '$dir' (read-only or no permission)"
  [ -w "$dir" ] || fail "cannot write into '$dir'"
done
if [ -e "$bin_dir/corvex" ] && [ ! -L "$bin_dir/corvex" ]; then
  fail "'$bin_dir/corvex' exists and is not a link installed by Corvex: not replacing it"
fi

# Build what the bundle holds.
if [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null; then
  bash scripts/install-deps.sh
fi
cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build_dir" --target Corvex CorvexAgent corvex corvex_bundle_resources corvex_translations

stage=$(mktemp -d "${TMPDIR:-/tmp}/corvex-install.XXXXXX")
new_bundle="$apps_dir/.Corvex.app.new-$$"
old_bundle="$apps_dir/.Corvex.app.old-$$"
cleanup() {
  rm -rf "$stage" "$new_bundle"
  # An interrupted swap puts the previous bundle back.
  if [ -d "$old_bundle" ] && [ ! -e "$bundle" ]; then mv "$old_bundle" "$bundle"; fi
}
trap cleanup EXIT
DESTDIR="$stage" cmake --install "$build_dir" --component Bundle >/dev/null
staged=$(find "$stage" -type d -name Corvex.app -prune | head -n 1)
[ -n "$staged" ] && [ -x "$staged/Contents/MacOS/Corvex" ] || fail "the build did not produce a complete Corvex.app"
cp -a "$staged" "$new_bundle" || fail "could not copy Corvex.app into '$apps_dir'"

# Running copies of the installed bundle quit before it is replaced.
agent_was_running=0
if [ -d "$bundle" ]; then
  if [ -n "$(corvex_pids_in "$bundle/Contents/Helpers/CorvexAgent.app")" ]; then agent_was_running=1; fi
  corvex_quit_running "$bundle" || fail "Corvex running from '$bundle' did not quit: quit it and install again"
fi

# The swap: the new bundle takes the old one's place, the old one goes.
previous=()
[ -f "$manifest" ] && mapfile -t previous <"$manifest"
if [ -e "$bundle" ]; then mv "$bundle" "$old_bundle"; fi
mv "$new_bundle" "$bundle"
rm -rf "$old_bundle"

# Desktop integration, from the bundle's own resources.
resources="$bundle/Contents/Resources"
installed=("$bundle")
install_file() { # source destination
  mkdir -p "$(dirname "$2")"
  cp "$1" "$2.tmp-$$" && mv -f "$2.tmp-$$" "$2"
  installed+=("$2")
}
install_entry() { # template destination
  mkdir -p "$(dirname "$2")"
  sed "s|@CORVEX_BUNDLE_PATH@|$(printf '%s' "$bundle" | sed 's/[|&]/\\&/g')|g" "$1" >"$2.tmp-$$"
  mv -f "$2.tmp-$$" "$2"
  installed+=("$2")
}
install_entry "$resources/desktop/com.ostrel.Corvex.desktop.in" "$data_dir/applications/com.ostrel.Corvex.desktop"
install_entry "$resources/desktop/com.ostrel.CorvexAgent.desktop.in" \
  "$data_dir/applications/com.ostrel.CorvexAgent.desktop"
while IFS= read -r -d '' icon; do
  install_file "$icon" "$data_dir/icons/hicolor/${icon#"$resources/icons/hicolor/"}"
done < <(find "$resources/icons/hicolor" -type f -print0)
install_file "$resources/desktop/com.ostrel.Corvex.metainfo.xml" "$data_dir/metainfo/com.ostrel.Corvex.metainfo.xml"
install_file "$resources/man/corvex.1" "$man_dir/man1/corvex.1"
install_file "$resources/completion/corvex" "$data_dir/bash-completion/completions/corvex"
ln -sfn "$bundle/Contents/Helpers/corvex" "$bin_dir/corvex"
installed+=("$bin_dir/corvex")

# What an older install left that this one no longer has goes now.
for path in "${previous[@]}"; do
  keep=0
  for now in "${installed[@]}"; do [ "$now" = "$path" ] && keep=1 && break; done
  if [ $keep -eq 0 ] && [ -n "$path" ] && [ "$path" != "$bundle" ] && { [ -f "$path" ] || [ -L "$path" ]; }; then
    rm -f "$path"
  fi
done
printf '%s\n' "${installed[@]}" >"$manifest.tmp-$$" && mv -f "$manifest.tmp-$$" "$manifest"

corvex_refresh_databases
if [ "$system" -eq 0 ] && command -v xdg-mime >/dev/null; then
  xdg-mime default com.ostrel.Corvex.desktop x-scheme-handler/qzcv || true
fi

echo "Corvex installed in $bundle"
if [ "$system" -eq 0 ]; then
  case ":$PATH:" in
    *":$bin_dir:"*) ;;
    *) echo "Note: $bin_dir is not on your PATH; add it to run 'corvex' by name." ;;
  esac
fi
if [ $agent_was_running -eq 1 ] && [ "$system" -eq 0 ]; then
  setsid "$bundle/Contents/Helpers/CorvexAgent.app/Contents/MacOS/CorvexAgent" >/dev/null 2>&1 </dev/null &
  echo "The agent was running: started the new one."
fi
