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
# small ones and a longer timeout. The mesh target's first byte picks the format (0 STL, 1 PLY,
# 2 OBJ, 3 OFF, 4 glTF, 5 GLB); assimp's readers leak on malformed files inside assimp, which its
# suppression file (naming assimp's library only) leaves out of the leak check.
echo "== fuzz: configure, build and run"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$jobs"
corpus=$(mktemp -d)
mkdir -p "$corpus"/hmf "$corpus"/edit "$corpus"/ifc "$corpus"/mesh
cp examples/*.hmf "$corpus"/hmf/
printf '\x03faces=red' >"$corpus"/edit/color
printf '\x11renamed' >"$corpus"/edit/name
printf '\x2a1 0 0 0 0 1 0 0 0 0 1 0 5 5 5 1' >"$corpus"/edit/matrix
cp tests/data/tiny_unknown_entities.ifc "$corpus"/ifc/
head -c 2048 tests/data/IfcOpenHouse_IFC4.ifc >"$corpus"/ifc/house_start.ifc
spider=tests/data/Spider_binary.stl
{ printf '\x00'; head -c 80 $spider; printf '\x18\0\0\0'; dd if=$spider bs=1 skip=84 count=1200 status=none; } \
    >"$corpus"/mesh/spider_24.stl
printf '\x02v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3\nf 1 3 4\n' >"$corpus"/mesh/square.obj
printf '\x03OFF\n4 2 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n3 0 1 2\n3 0 2 3\n' >"$corpus"/mesh/square.off
samples=../shared/samples/mesh
if [[ -d $samples ]]; then
    { printf '\x01'; head -c 2048 $samples/Wuson.ply; } >"$corpus"/mesh/wuson_start.ply
    { printf '\x04'; cat $samples/BoxTextured_embedded.gltf; } >"$corpus"/mesh/box.gltf
fi
for run in "metafile_fuzzer hmf 4096 10" "attribute_set_fuzzer hmf 4096 10" \
           "optimize_fuzzer hmf 4096 10" "edit_text_fuzzer edit 512 10" \
           "ifc_fuzzer ifc 4096 30" "mesh_fuzzer mesh 10000 10"; do
    read -r target seeds maxlen timeout <<<"$run"
    suppressions=""
    if [[ $target == mesh_fuzzer ]]; then
        suppressions="suppressions=$PWD/tests/fuzz/assimp_leaks.supp"
    fi
    if ! LSAN_OPTIONS="$suppressions" build/fuzz/tests/fuzz/$target -max_total_time=30 \
            -max_len="$maxlen" -timeout="$timeout" -artifact_prefix=build/fuzz/ "$corpus/$seeds" \
            >build/fuzz/$target.log 2>&1; then
        tail -n 40 build/fuzz/$target.log
        status=1
    fi
    echo "fuzz: $target: $(grep -o 'Done [0-9]* runs' build/fuzz/$target.log || echo failed)"
done
rm -rf "$corpus"
exit $status
