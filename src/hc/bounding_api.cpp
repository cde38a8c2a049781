// The bounding functions of the C interface.
#include <cmath>

#include "hc/api_support.h"
#include "hc/attribute.h"
#include "hc/geometry_bounds.h"

using namespace hc;
using namespace hc::api;

namespace {

// A sphere item's own sphere; every other bounded object has a cuboid.
bool SphereOf(HC_KEY key, HC_POINT& center, float& radius) {
    const Object* object = ObjectOf(key);
    return object && object->kind == ObjectKind::Geometry &&
           LocalSphere(static_cast<const Geometry&>(*object), center, radius);
}

Box BoxOf(HC_KEY key) {
    Slot slot = CurrentSession().Require(key);
    return slot == kNoSlot ? Box{} : Current().ObjectBounds(slot);
}

} // namespace

extern "C" {

void HC_Show_Bounding_Info_By_Key(HC_KEY key, char* info) {
    HC_API(HC_Show_Bounding_Info_By_Key);
    HC_POINT center;
    float radius;
    if (SphereOf(key, center, radius))
        CopyOut("type=sphere", info);
    else
        CopyOut(BoxOf(key).empty ? "" : "type=cuboid", info);
}

void HC_Show_Bounding_Cuboid_By_Key(HC_KEY key, HC_POINT* min, HC_POINT* max) {
    HC_API(HC_Show_Bounding_Cuboid_By_Key);
    Box box = BoxOf(key);
    Put(min, box.min);
    Put(max, box.max);
}

void HC_Show_Bounding_Sphere_By_Key(HC_KEY key, HC_POINT* center, float* radius) {
    HC_API(HC_Show_Bounding_Sphere_By_Key);
    HC_POINT c{0, 0, 0};
    float r = 0;
    if (!SphereOf(key, c, r)) {
        // The sphere around the cuboid.
        Box box = BoxOf(key);
        if (!box.empty) {
            c = {(box.min.x + box.max.x) / 2, (box.min.y + box.max.y) / 2,
                 (box.min.z + box.max.z) / 2};
            float dx = box.max.x - c.x, dy = box.max.y - c.y, dz = box.max.z - c.z;
            r = std::sqrt(dx * dx + dy * dy + dz * dz);
        }
    }
    Put(center, c);
    Put(radius, r);
}

bool HC_Compute_Circumcuboid(const char* segment, HC_POINT* min, HC_POINT* max) {
    HC_API(HC_Compute_Circumcuboid);
    Slot slot = CurrentSession().ResolvePath(Text(segment), false);
    Box box = slot == kNoSlot ? Box{} : Current().SegmentBounds(slot);
    Put(min, box.min);
    Put(max, box.max);
    return !box.empty;
}

void HC_Compute_Transformed_Points(int count, const HC_POINT* points, const float* matrix,
                                   HC_POINT* result) {
    HC_API(HC_Compute_Transformed_Points);
    if (count < 0 || (count > 0 && (!points || !matrix || !result))) {
        ReportError("bad points, matrix or result");
        return;
    }
    for (int i = 0; i < count; ++i)
        result[i] = TransformPoint(points[i], matrix);
}

} // extern "C"
