#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Installs every Debian package that building, testing and running Corvex needs, when it is missing.
# Idempotent and quiet when everything is already there.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config clang-format
  qt6-base-dev qt6-base-dev-tools qt6-tools-dev-tools libqt6dbus6 libqt6printsupport6 libqt6concurrent6
  libqt6svg6 qt6-image-formats-plugins qt6-qpa-plugins
  libplist-dev libssl-dev libglib2.0-dev libarchive-dev
  libgif-dev libimagequant-dev libspng-dev libpoppler-qt6-dev libpoppler-private-dev libjpeg62-turbo-dev libtiff-dev zlib1g-dev
  libgtest-dev libgmock-dev
  dbus dbus-x11 xvfb xauth x11-utils
  librsvg2-bin qt6-tools-dev desktop-file-utils xdg-utils appstream
  fonts-dejavu-core pci.ids python3
)

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
