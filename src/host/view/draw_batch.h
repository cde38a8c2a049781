// What one segment draws where the walk reached it: its own geometry (not its subsegments'),
// already carried into world space and coloured, as triangles, line segments and point marks,
// with the item each run of primitives came from, for picking and the selection highlight.
#pragma once

#include <cstdint>
#include <vector>

#include <obsidra/hc.h>

#include "host/view/net_look.h"
#include "host/view/view_math.h"

namespace obsidra::host::view {

struct Vertex {
    float x, y, z;
    Rgba rgba;
};

// The primitives from first on (up to the next run's first) come from item.
struct ItemRun {
    HC_KEY item;
    std::uint32_t first;
};

// Vertices of one primitive kind, with whose they are.
struct Primitives {
    std::vector<Vertex> vertices;
    std::vector<ItemRun> runs;

    // Starts the primitives of an item (a run of nothing is taken back when the next begins).
    void BeginItem(HC_KEY item, int verticesPerPrimitive) {
        auto first = static_cast<std::uint32_t>(vertices.size() / verticesPerPrimitive);
        if (!runs.empty() && runs.back().first == first) runs.pop_back();
        runs.push_back({item, first});
    }
    // The item of primitive i.
    HC_KEY ItemOf(std::uint32_t primitive) const;
    bool Empty() const { return vertices.empty(); }
};

struct DrawBatch {
    Primitives triangles;   // three vertices each
    Primitives lines;       // two vertices each
    Primitives points;      // markers and text positions
    Primitives translucent; // triangles whose colour lets light through, drawn last
    Box bounds;             // world space

    // The kinds by number, in the order they are drawn, with their vertices per primitive.
    static constexpr int kKinds = 4;
    static constexpr int kVerticesPer[kKinds] = {3, 2, 1, 3};
    const Primitives& Kind(int kind) const {
        const Primitives* kinds[kKinds] = {&triangles, &lines, &points, &translucent};
        return *kinds[kind];
    }
    bool Empty() const {
        return triangles.Empty() && lines.Empty() && points.Empty() && translucent.Empty();
    }
};

} // namespace obsidra::host::view
