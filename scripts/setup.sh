#!/usr/bin/env bash
# Installs what building, testing and running need on a Debian machine, and
# nothing when it is already there. Needs root (or sudo) only when something
# is missing.
set -euo pipefail

packages=(build-essential cmake ninja-build pkg-config
          qtbase5-dev qtbase5-dev-tools libqt5svg5-dev qttools5-dev-tools libtiff-dev
          xvfb xauth fonts-dejavu-core)

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

echo "setup: installing ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup: need root or sudo to install ${missing[*]}" >&2; exit 1; }
    SUDO="sudo"
fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q
$SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"
