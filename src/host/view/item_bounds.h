// The world box of an item reached through an include path, as the view fits and outlines it.
#pragma once

#include <obsidra/hc.h>

#include "host/view/view_math.h"

namespace obsidra::host::view {

// The box, in world space, of a segment or geometry item: its bounds carried by its net
// modelling matrix along the path (the item, the includes innermost first, as the selection
// set and the browser give it). Empty for a dead key or one with nothing to bound.
Box WorldBounds(HC_KEY key, int count, const HC_KEY* path);

} // namespace obsidra::host::view
