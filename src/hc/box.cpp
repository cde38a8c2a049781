#include "hc/box.h"

#include <algorithm>

#include "hc/attribute.h"

namespace hc {

void Box::Add(const HC_POINT& p) {
    if (empty) {
        min = max = p;
        empty = false;
        return;
    }
    min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
    max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
}

void Box::Add(const Box& other) {
    if (other.empty) return;
    Add(other.min);
    Add(other.max);
}

Box Box::Transformed(const float* matrix) const {
    if (empty || !matrix) return *this;
    Box result;
    for (int corner = 0; corner < 8; ++corner) {
        HC_POINT p{corner & 1 ? max.x : min.x, corner & 2 ? max.y : min.y,
                   corner & 4 ? max.z : min.z};
        result.Add(TransformPoint(p, matrix));
    }
    return result;
}

} // namespace hc
