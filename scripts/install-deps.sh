#!/usr/bin/env bash
# Installs the Debian packages Tolm needs, but only when one is missing.
set -euo pipefail
packages=(
  g++ make cmake ninja-build pkg-config
  libncurses-dev libpam0g-dev libboost-filesystem-dev nlohmann-json3-dev
  googletest libgtest-dev libgmock-dev libvterm-dev libpam-wrapper
  less openssl openssh-client faketime libfaketime
)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
echo "Installing missing packages: ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -q
$sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
