#!/usr/bin/env bash
# The main job: builds what is missing and prints the bundled example scene's segment tree.
# Any arguments are handed to obsidra-scene instead (see `obsidra-scene --help`).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh >/dev/null
cmake --preset default >/dev/null
cmake --build --preset default --target obsidra-scene >/dev/null

if (($#)); then
    exec build/release/src/tools/obsidra-scene "$@"
fi
exec build/release/src/tools/obsidra-scene tree examples/house.hmf
