#include "scenetree/manipulator.h"

namespace obsidra::scenetree {

// The view side has no handles yet; this is the one place that will hand the segment to them.
HC_KEY SetupManipulator(HC_KEY, HBaseView*) {
    return 0;
}

} // namespace obsidra::scenetree
