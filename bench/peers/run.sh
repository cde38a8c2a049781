#!/usr/bin/env bash
# Runs the side-by-side programs alternately (ours, Coin3D, OpenSceneGraph, in a rotating order),
# each shape ROUNDS times in a fresh process, checks that they found the same answers and prints
# one table of medians with the ratios ours / peer.
#
#   bench/peers/run.sh [BUILD_DIR]     (default: build/peers, a Release build)
#   ROUNDS=5 COIN_ROUNDS=1 SHAPES="wide deep" bench/peers/run.sh
#
# Coin3D takes minutes per process at this size (its name table's chains grow with the number of
# names, and every SoSeparator interns names), so it runs COIN_ROUNDS times (default 1).
#
# Within a process every repeatable operation has one warm-up run and is the median of five;
# build, the first bounds, memory and the deletion happen once per process, and the table gives
# the median over the processes.
set -euo pipefail

root="$(cd "$(dirname "$0")/../.." && pwd)"
build="${1:-$root/build/peers}"
rounds="${ROUNDS:-3}"
coinRounds="${COIN_ROUNDS:-1}"
shapes="${SHAPES:-wide deep}"
bin="$build/bench/peers"

programs=()
for p in ours coin osg; do
    if [ -x "$bin/bench_peers_$p" ]; then
        programs+=("$p")
    else
        echo "run.sh: $bin/bench_peers_$p is not built (is the peer's package installed?)" >&2
    fi
done
[ -x "$bin/bench_peers_ours" ] || exit 1

out="$(mktemp -d)"
trap 'rm -rf "$out"' EXIT

echo "load before: $(cut -d' ' -f1-3 /proc/loadavg)"
for ((r = 0; r < rounds; ++r)); do
    for shape in $shapes; do
        n=${#programs[@]}
        for ((i = 0; i < n; ++i)); do
            p="${programs[$(((i + r) % n))]}"
            [ "$p" = coin ] && ((r >= coinRounds)) && continue
            "$bin/bench_peers_$p" "$shape" >"$out/$shape.$p.$r"
        done
    done
done
echo "load after: $(cut -d' ' -f1-3 /proc/loadavg)"

python3 - "$out" "$rounds" "$shapes" "${programs[@]}" <<'PY'
import os, statistics, sys
out, rounds, shapes, programs = sys.argv[1], int(sys.argv[2]), sys.argv[3].split(), sys.argv[4:]
peers = [p for p in programs if p != "ours"]
names = {"ours": "ours", "coin": "Coin3D", "osg": "OSG"}
# (our key, the peers' key, label): the census is ours alone and is set against the peers' count.
operations = [("build", "build", "build"),
              ("bytes_per_segment", "bytes_per_segment", "memory, bytes per segment"),
              ("bounds", "bounds", "bounds, first"), ("walk", "walk", "walk everything"),
              ("search", "search", "name search"), ("shells", "shells", "shell count"),
              ("census", "shells", "shell count by the census (with faces, vertices)"),
              ("move_bounds", "move_bounds", "move a leaf + bounds"),
              ("delete_half", "delete_half", "delete half")]

def read(path):
    values, answers, boxes = {}, {}, {}
    for line in open(path):
        kind, what, *rest = line.split()
        if kind in ("time", "memory"):
            values[what] = float(rest[0])
        elif kind == "answer":
            answers[what] = int(rest[0])
        elif kind == "box":
            boxes[what.replace("_sphere", "")] = [float(v) for v in rest]
    return values, answers, boxes

ok = True
rows = []
for shape in shapes:
    runs = {p: [read(f"{out}/{shape}.{p}.{r}") for r in range(rounds)
                if os.path.exists(f"{out}/{shape}.{p}.{r}")] for p in programs}
    for r in range(rounds):
        ours = runs["ours"][r]
        for p in peers:
            if r >= len(runs[p]):
                continue
            theirs = runs[p][r]
            if theirs[1] != ours[1]:
                print(f"{shape}: {p} answers {theirs[1]}, ours {ours[1]}")
                ok = False
            for what, box in ours[2].items():
                other = theirs[2].get(what)
                # OpenSceneGraph's cached bound is a sphere: it must hold the box.
                holds = other is not None and all(other[i] <= box[i] + 1e-3 for i in range(3)) \
                    and all(other[i] >= box[i] - 1e-3 for i in range(3, 6))
                exact = other == box
                if not (exact or (p == "osg" and holds)):
                    print(f"{shape}: {p} {what} {other}, ours {box}")
                    ok = False
    answers = runs["ours"][0][1]
    print(f"\n{shape}: " + ", ".join(f"{k} {v}" for k, v in answers.items()) + "; runs: " +
          ", ".join(f"{names[p]} {len(runs[p])}" for p in programs))
    header = "| operation | " + " | ".join(names[p] for p in programs) + " | " + \
        " | ".join(f"ours / {names[p]}" for p in peers) + " |"
    print(header)
    print("|" + "---|" * (1 + len(programs) + len(peers)))
    for ours_key, peer_key, label in operations:
        med = {p: statistics.median(run[0][ours_key if p == "ours" else peer_key]
                                    for run in runs[p]) if runs[p] else None
               for p in programs}
        unit = "" if ours_key == "bytes_per_segment" else " ms"
        cells = ["-" if med[p] is None else f"{med[p]:.0f}{unit}" if med[p] >= 10
                 else f"{med[p]:.3f}{unit}" for p in programs]
        ratios = ["-" if not med[p] else f"{med['ours'] / med[p]:.2f}"
                  if med['ours'] / med[p] >= 0.1 else f"{med['ours'] / med[p]:.2g}" for p in peers]
        print(f"| {label} | " + " | ".join(cells) + " | " + " | ".join(ratios) + " |")
print("\nanswers agree" if ok else "\nANSWERS DIFFER")
sys.exit(0 if ok else 1)
PY
