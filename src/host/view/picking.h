// What lies under a pixel: the nearest triangle the pixel's ray hits, or a line or point mark
// drawn within a few pixels of it, found in the cached batches (no redraw needed).
#pragma once

#include <vector>

#include <obsidra/hc.h>

#include "host/view/camera.h"
#include "host/view/scene_cache.h"

namespace obsidra::host::view {

struct PickHit {
    HC_KEY item = -1;  // the geometry item; -1 when nothing is there
    int instance = -1; // the segment instance it was drawn in
    float distance = 0;
};

PickHit Pick(const SceneCache& cache, const Camera& camera, float x, float y,
             float tolerance = 4.0f);

// The path a selection set holds for an item drawn through links (outermost first): the item,
// the links innermost first, then top. skipLink (the view's own include of its model) is left
// out, so that paths read as they do from the model down.
std::vector<HC_KEY> SelectionPath(HC_KEY item, const std::vector<HC_KEY>& links, HC_KEY skipLink,
                                  HC_KEY top);

} // namespace obsidra::host::view
