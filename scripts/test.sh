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
# A short run of each fuzz target (about 30 s each) over seeds from the bundled examples; any
# crash, leak, hang or broken database fails. IFC++ is slow on large inputs: its target takes
# small ones and a longer timeout.
echo "== fuzz: configure, build and run"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$jobs"
corpus=$(mktemp -d)
mkdir -p "$corpus"/hmf "$corpus"/edit "$corpus"/ifc
cp examples/*.hmf "$corpus"/hmf/
printf '\x03faces=red' >"$corpus"/edit/color
printf '\x11renamed' >"$corpus"/edit/name
printf '\x2a1 0 0 0 0 1 0 0 0 0 1 0 5 5 5 1' >"$corpus"/edit/matrix
cp tests/data/tiny_unknown_entities.ifc "$corpus"/ifc/
head -c 2048 tests/data/IfcOpenHouse_IFC4.ifc >"$corpus"/ifc/house_start.ifc
for run in "metafile_fuzzer hmf 4096 10" "attribute_set_fuzzer hmf 4096 10" \
           "optimize_fuzzer hmf 4096 10" "edit_text_fuzzer edit 512 10" \
           "ifc_fuzzer ifc 4096 30"; do
    read -r target seeds maxlen timeout <<<"$run"
    if ! build/fuzz/tests/fuzz/$target -max_total_time=30 -max_len="$maxlen" -timeout="$timeout" \
            -artifact_prefix=build/fuzz/ "$corpus/$seeds" >build/fuzz/$target.log 2>&1; then
        tail -n 40 build/fuzz/$target.log
        status=1
    fi
    echo "fuzz: $target: $(grep -o 'Done [0-9]* runs' build/fuzz/$target.log || echo failed)"
done
rm -rf "$corpus"
exit $status
