// Geometry items into draw batches: each kind the view draws is triangulated or tessellated,
// carried into world space by the net modelling matrix and coloured by its net look.
#pragma once

#include <string_view>

#include <obsidra/hc.h>

#include "host/view/draw_batch.h"
#include "host/view/net_look.h"
#include "host/view/view_math.h"

namespace obsidra::host::view {

// The attributes a walk carries down from a segment to what lies below it.
struct NetState {
    OptionMap colour;
    OptionMap visibility;
    OptionMap conditions;
    Mat4 matrix;
};

// Appends what one geometry item draws (its own colour and visibility merged over net) to
// batch. type is the item's type word as a contents search gives it. Kinds with nothing to see
// (lights, cutting planes, images, grids, infinite lines) add nothing; so does a dead key.
void ExtractItem(HC_KEY item, std::string_view type, const NetState& net, DrawBatch& batch);

} // namespace obsidra::host::view
