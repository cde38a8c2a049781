#pragma once

#include <algorithm>

#include <obsidra/hc.h>

namespace hc {

// An axis-aligned box; empty until a point is added.
struct Box {
    HC_POINT min{0, 0, 0};
    HC_POINT max{0, 0, 0};
    bool empty = true;

    // Inline: bounds are gathered a box per child, and an edit's recomputation is mostly this.
    void Add(const HC_POINT& p) {
        if (empty) {
            min = max = p;
            empty = false;
            return;
        }
        min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
        max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
    }
    void Add(const Box& other) {
        if (other.empty) return;
        Add(other.min);
        Add(other.max);
    }
    // The box around this box's eight corners taken through a 4x4 matrix (row vectors).
    Box Transformed(const float* matrix) const;
};

} // namespace hc
