#!/usr/bin/env bash
# Installs, from Debian's packages, everything the build and the tests need. Idempotent: packages
# already present are left alone and apt is not asked at all when nothing is missing.
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config
    libgtest-dev libgmock-dev libbenchmark-dev
    clang-format
)

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if ((${#missing[@]})); then
    echo "install-deps: installing ${missing[*]}"
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    export DEBIAN_FRONTEND=noninteractive
    $sudo apt-get update -q
    $sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
else
    echo "install-deps: everything is installed"
fi
