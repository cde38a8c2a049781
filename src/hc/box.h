#pragma once

#include <obsidra/hc.h>

namespace hc {

// An axis-aligned box; empty until a point is added.
struct Box {
    HC_POINT min{0, 0, 0};
    HC_POINT max{0, 0, 0};
    bool empty = true;

    void Add(const HC_POINT& p);
    void Add(const Box& other);
    // The box around this box's eight corners taken through a 4x4 matrix (row vectors).
    Box Transformed(const float* matrix) const;
};

} // namespace hc
