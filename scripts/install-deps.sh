#!/usr/bin/env bash
# Installs everything the project builds, tests and runs with, from Debian's packages.
# Idempotent: packages already present are left alone, and apt is only asked when one is missing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config git
  qtbase5-dev qtbase5-dev-tools libqt5opengl5-dev
  libboost1.81-dev libboost-log1.81-dev libboost-thread1.81-dev libboost-filesystem1.81-dev
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  chromium-headless-shell chromium libxcb1-dev x11-utils
  libx11-dev libxext-dev libxdamage-dev libxfixes-dev libxcomposite-dev libxtst-dev
  libssl-dev openssl libdeflate-dev media-types nodejs
  xvfb xauth fonts-dejavu-core
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done

if [ ${#missing[@]} -gt 0 ]; then
  echo "install-deps: installing ${missing[*]}"
  sudo_cmd=""
  [ "$(id -u)" -eq 0 ] || sudo_cmd="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $sudo_cmd apt-get update -qq
  $sudo_cmd apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
