#pragma once

#include <obsidra/hc.h>

#include "hc/objects.h"

namespace hc {

// The axis-aligned box of an item in its own coordinates: exact for circles, arcs, ellipses,
// spheres and cylinders, the control points' box for NURBS, the position for markers, texts and
// images. False for what has no extent: lights, cutting planes, infinite lines and rays, grids
// with a count of 0 (unbounded) and items without points. Coordinates that are not numbers are
// left out.
bool LocalBounds(const Geometry& item, HC_POINT& min, HC_POINT& max);

// The bounding sphere of a sphere item; false for every other kind.
bool LocalSphere(const Geometry& item, HC_POINT& center, float& radius);

} // namespace hc
