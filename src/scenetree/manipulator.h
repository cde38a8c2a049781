#pragma once

#include <obsidra/hc.h>

class HBaseView;

namespace obsidra::scenetree {

// "Activate Manipulator": puts the view's move, rotate and scale handles on the segment, every
// one of the six switched on and no position given. Returns the handles' key, 0 when there are
// none.
HC_KEY SetupManipulator(HC_KEY segment, HBaseView* view);

} // namespace obsidra::scenetree
