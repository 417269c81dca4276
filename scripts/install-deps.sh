#!/usr/bin/env bash
# Installs the Debian packages the build needs, only those that are missing.
# Extra package names given as arguments are installed the same way.
set -euo pipefail
packages=(cmake g++ make libgtest-dev libbenchmark-dev libcli11-dev nlohmann-json3-dev libpng-dev libmpfi-dev pkg-config "$@")
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "installing: ${missing[*]}"
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y --no-install-recommends "${missing[@]}"
fi
