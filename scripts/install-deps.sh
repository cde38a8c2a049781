#!/usr/bin/env bash
# Installs, from Debian's packages, everything the build and the tests need. Idempotent: packages
# already present are left alone and apt is not asked at all when nothing is missing.
#   --bench  also the peers that bench/peers compares against (Coin3D 4, OpenSceneGraph 3.6)
set -euo pipefail

bench=0
for arg in "$@"; do
    case "$arg" in
    --bench) bench=1 ;;
    *)
        echo "usage: $0 [--bench]" >&2
        exit 2
        ;;
    esac
done

packages=(
    build-essential cmake ninja-build pkg-config
    libgtest-dev libgmock-dev libbenchmark-dev
    libifcplusplus-dev libboost-dev
    qt6-base-dev libqt6opengl6-dev libgl-dev libassimp-dev
    fonts-noto-cjk xvfb xauth libgl1-mesa-dri
    clang-format
    clang libclang-rt-14-dev
)
((bench)) && packages+=(libcoin-dev libopenscenegraph-dev)

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
