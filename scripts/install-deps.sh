#!/usr/bin/env bash
# Installs the Debian packages that building, testing and fuzzing need, or with arguments
# those packages instead (without their recommended extras: the Windows build's list). Skips
# apt when all are present.
set -euo pipefail
packages=(
  build-essential cmake pkg-config
  libgtest-dev libgmock-dev libbenchmark-dev
  libcairo2-dev libpango1.0-dev libgdk-pixbuf-2.0-dev libfontconfig-dev fonts-dejavu-core
  libcli11-dev nlohmann-json3-dev
  dvdauthor ffmpeg genisoimage libdvdnav-dev
  clang libclang-rt-dev
)
recommends=()
if (($#)); then
  packages=("$@"); recommends=(--no-install-recommends)
fi
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
  sudo=""; [ "$(id -u)" = 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${recommends[@]}" "${missing[@]}"
fi
