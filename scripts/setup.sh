#!/usr/bin/env bash
# Installs what building, testing and running need on a Debian machine, and
# nothing when it is already there. Needs root (or sudo) only when something
# is missing.
set -euo pipefail

# Qt 5 and Qt 6 both: the tests run against each. dpkg-dev and file let CPack
# work out the Debian package's dependencies; the translations packages hold
# Qt's own texts (standard buttons and dialogs).
packages=(build-essential cmake ninja-build pkg-config
          qtbase5-dev qtbase5-dev-tools libqt5svg5-dev qttools5-dev qttools5-dev-tools qttranslations5-l10n
          qt6-base-dev qt6-base-dev-tools qt6-svg-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools
          qt6-translations-l10n libgl-dev libtiff-dev rapidjson-dev
          dpkg-dev file python3 xvfb xauth fonts-dejavu-core)

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
