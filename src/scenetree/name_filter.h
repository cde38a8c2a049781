#pragma once

// Filtering the segment tree as the user types: which segments below a root have a name that
// holds the typed text, and which segments must stay in the tree to reach them. It reads the
// database's own lists, not the tree's items, so it needs nothing expanded, and it is built to
// be thrown away at the next keystroke: the walk goes in slices, so that a dialog can show the
// first hits, answer the keyboard between slices and drop the rest of a walk a newer key made
// useless.

#include <atomic>
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <obsidra/hc.h>

namespace obsidra::scenetree {

struct SegmentNameMatches {
    // The hits and every segment between a hit and the root, the root included; empty when
    // nothing matched.
    std::unordered_set<HC_KEY> keep;
    // Of those, the segments with a kept subsegment (the ones a filtered tree opens), each with
    // its kept subsegments in the order it lists them and how many subsegments it had then: a
    // tree makes a parent's rows (and pages) from them without listing it again.
    struct Kept {
        int listed = 0;
        std::vector<HC_KEY> keys;
    };
    std::unordered_map<HC_KEY, Kept> children;
    bool IsParent(HC_KEY segment) const { return children.contains(segment); }
    size_t hits = 0;
    // Stopped by the cancel flag: keep and hits hold what was found until then.
    bool cancelled = false;
};

// One walk over the subsegments below root (depth first, each list in its order; not through
// includes) for own names that hold text, without regard to ASCII case, a slice at a time. The
// root itself is never a hit. An empty text, or a root that is no segment, matches nothing. The
// walk reads the database between slices as it stands then: a segment deleted meanwhile is
// passed over, one made meanwhile may be missed.
class SegmentNameWalk {
public:
    SegmentNameWalk(HC_KEY root, std::string_view text);

    // Visits up to budget more segments; true once the walk has ended.
    bool Step(size_t budget);
    const std::string& Text() const { return m_text; }
    // What was found so far; all of it once Step has said the walk ended.
    const SegmentNameMatches& Matches() const { return m_matches; }
    SegmentNameMatches TakeMatches() { return std::move(m_matches); }
    // The hits so far, in the order the tree lists them.
    std::span<const HC_KEY> Hits() const { return m_hits; }

private:
    struct Pending {
        HC_KEY key;
        size_t depth;
    };
    // Puts the segment's subsegments on the pending list; returns how many it has.
    int PushChildren(HC_KEY segment, size_t depth);

    std::string m_text;
    std::string m_lowerText;
    SegmentNameMatches m_matches;
    std::vector<HC_KEY> m_hits;
    // Segments still to visit with their depth, and the path from the root to the one being
    // visited, whose segments a hit keeps, with their subsegment counts.
    std::vector<Pending> m_pending;
    std::vector<HC_KEY> m_path;
    std::vector<int> m_listed;
    std::vector<HC_KEY> m_children;
};

// Hits as they are found, in the order the tree lists them.
using SegmentNameHits = std::function<void(std::span<const HC_KEY> hits)>;

// The whole walk at once. onHits, when given, hears the first hit at once and later ones in
// growing batches (and whatever is pending after a long stretch without a full batch). cancel,
// when given, is read every few hundred segments; once it is true the walk stops.
SegmentNameMatches FilterSegmentNames(HC_KEY root, std::string_view text,
                                      const std::atomic<bool>* cancel = nullptr,
                                      const SegmentNameHits& onHits = {});

} // namespace obsidra::scenetree
