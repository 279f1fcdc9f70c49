#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the demo need.
# Safe to run again: apt-get skips what is already there.
set -euo pipefail
PKGS=(cmake g++ make ninja-build pkg-config
      googletest libgtest-dev libgmock-dev libbenchmark-dev
      libcairo2-dev libpng-dev libjpeg-dev
      libcli11-dev nlohmann-json3-dev libeigen3-dev libpolyclipping-dev
      librsvg2-bin python3-minimal)
missing=()
for p in "${PKGS[@]}"; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  SUDO=""
  if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
