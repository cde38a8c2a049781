#!/usr/bin/env bash
# Installs what is missing, then configures, builds and runs every test twice: a release build
# and an AddressSanitizer + UndefinedBehaviorSanitizer build.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh

jobs=$(nproc)
status=0
for preset in default asan; do
    echo "== ${preset}: configure and build"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" -j "$jobs"
    echo "== ${preset}: test"
    ctest --preset "$preset" -j "$jobs" || status=1
done
exit $status
