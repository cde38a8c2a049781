#pragma once

// Filtering the segment tree as the user types: which segments below a root have a name that
// holds the typed text, and which segments must stay in the tree to reach them. It reads the
// database's own lists, not the tree's items, so it needs nothing expanded, and it is built to
// be thrown away at the next keystroke: it hands its hits over in batches as it finds them, and
// stops at once when asked to.

#include <atomic>
#include <functional>
#include <span>
#include <string_view>
#include <unordered_set>

#include <obsidra/hc.h>

namespace obsidra::scenetree {

struct SegmentNameMatches {
    // The hits and every segment between a hit and the root, the root included; empty when
    // nothing matched.
    std::unordered_set<HC_KEY> keep;
    size_t hits = 0;
    // Stopped by the cancel flag: keep and hits hold what was found until then.
    bool cancelled = false;
};

// Hits as they are found, in the order the tree lists them.
using SegmentNameHits = std::function<void(std::span<const HC_KEY> hits)>;

// Walks the subsegments below root (depth first, each list in its order; not through includes)
// for own names that hold text, without regard to ASCII case. The root itself is never a hit.
// onHits, when given, hears the first hit at once and later ones in growing batches (and
// whatever is pending after a long stretch without a full batch), so that a dialog can show
// the first matches of a large scene long before the walk ends. cancel, when given, is read
// between segments; once it is true the walk stops. An empty text, or a root that is no
// segment, matches nothing.
SegmentNameMatches FilterSegmentNames(HC_KEY root, std::string_view text,
                                      const std::atomic<bool>* cancel = nullptr,
                                      const SegmentNameHits& onHits = {});

} // namespace obsidra::scenetree
