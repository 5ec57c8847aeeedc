#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Installs the programs the image-conversion benchmark compares corvex with (ImageMagick and libvips) and the
# tools it measures with. Only the benchmark needs them; building and testing Corvex does not.
set -euo pipefail

packages=(imagemagick libvips-tools time poppler-utils)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}" >&2
SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
