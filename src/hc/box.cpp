#include "hc/box.h"

#include "hc/attribute.h"

namespace hc {

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
