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
# A third-party host built against the installed package, calling every export of the module.
echo "== example host: install, build against the package, run"
rm -rf build/install build/example-host
cmake --install build/release --prefix build/install >/dev/null
if cmake -S examples/host -B build/example-host -G Ninja -DCMAKE_PREFIX_PATH="$PWD/build/install" \
        >/dev/null && cmake --build build/example-host >/dev/null; then
    QT_QPA_PLATFORM=offscreen build/example-host/example-host --quit || status=1
else
    echo "example host: did not build against the installed package"
    status=1
fi
# A short run of each fuzz target over the bundled examples; any crash, leak or hang fails.
echo "== fuzz: configure, build and run"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$jobs"
corpus=$(mktemp -d)
cp examples/*.hmf "$corpus"/
for target in metafile_fuzzer attribute_set_fuzzer optimize_fuzzer; do
    if ! build/fuzz/tests/fuzz/$target -max_total_time=30 -max_len=4096 -timeout=10 \
            -artifact_prefix=build/fuzz/ "$corpus" >build/fuzz/$target.log 2>&1; then
        tail -n 40 build/fuzz/$target.log
        status=1
    fi
    echo "fuzz: $target: $(grep -o 'Done [0-9]* runs' build/fuzz/$target.log || echo failed)"
done
rm -rf "$corpus"
exit $status
