#!/usr/bin/env bash
# The main job: builds what is missing and opens the bundled sample building in obsidra-viewer.
# Where there is no display ($DISPLAY empty) the viewer runs under a virtual X server, draws the
# building once into build/viewer.png and says so.
#   scripts/run.sh [FILE] [VIEWER OPTIONS]   obsidra-viewer (obsidra-viewer --help)
#   scripts/run.sh scene ARGS...             obsidra-scene, the command-line tool (--help)
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh >/dev/null
cmake --preset default >/dev/null

if [[ "${1:-}" == scene ]]; then
    shift
    cmake --build --preset default --target obsidra-scene >/dev/null
    exec build/release/src/tools/obsidra-scene "$@"
fi

cmake --build --preset default --target obsidra-viewer >/dev/null
viewer=build/release/src/host/viewer/obsidra-viewer
if [[ -n "${DISPLAY:-}" ]]; then
    exec "$viewer" "$@"
fi
echo "run.sh: no display; drawing into build/viewer.png instead" >&2
LIBGL_ALWAYS_SOFTWARE=1 exec xvfb-run -a "$viewer" --screenshot build/viewer.png "$@"
