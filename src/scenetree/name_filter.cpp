#include "scenetree/name_filter.h"

#include <algorithm>

#include <obsidra/hc_fastpath.h>

#include "text/text.h"

namespace obsidra::scenetree {

namespace {

// The largest batch of hits handed over at once, and how many segments may pass while hits
// wait for a batch to fill.
constexpr size_t kLargestBatch = 4096;
constexpr size_t kLongestWait = 65536;
// How often the cancel flag is read: often enough to stop within a fraction of a millisecond.
constexpr size_t kCancelStride = 256;

bool Holds(std::string_view name, std::string_view lowerText) {
    return std::search(name.begin(), name.end(), lowerText.begin(), lowerText.end(),
                       [](char a, char b) { return text::Lower(a) == b; }) != name.end();
}

} // namespace

SegmentNameWalk::SegmentNameWalk(HC_KEY root, std::string_view text)
    : m_text(text), m_lowerText(text::ToLower(text)), m_path{root}, m_listed{0} {
    if (!text.empty() && HC_Fast_Segment_Name(root, nullptr)) m_listed[0] = PushChildren(root, 1);
}

int SegmentNameWalk::PushChildren(HC_KEY segment, size_t depth) {
    const int count = HC_Fast_Subsegment_Count(segment);
    if (count == 0) return 0;
    m_children.resize(static_cast<size_t>(count));
    m_children.resize(
        static_cast<size_t>(HC_Fast_Subsegment_Keys(segment, 0, count - 1, m_children.data())));
    for (auto child = m_children.rbegin(); child != m_children.rend(); ++child)
        m_pending.push_back({*child, depth});
    return count;
}

bool SegmentNameWalk::Step(size_t budget) {
    for (; budget > 0 && !m_pending.empty(); --budget) {
        const auto [key, depth] = m_pending.back();
        m_pending.pop_back();
        size_t length = 0;
        const char* name = HC_Fast_Segment_Name(key, &length);
        if (!name) continue; // deleted since its parent was listed
        m_path.resize(depth);
        m_path.push_back(key);
        m_listed.resize(depth);
        m_listed.push_back(PushChildren(key, depth + 1));
        if (!Holds({name, length}, m_lowerText)) continue;

        ++m_matches.hits;
        m_hits.push_back(key);
        m_matches.keep.insert(key);
        // Up the path while the parent is new to the tree: a parent kept already has its own
        // path kept. (A segment kept as a hit only becomes a parent here.)
        HC_KEY child = key;
        for (size_t level = depth; level-- > 0;) {
            const HC_KEY parent = m_path[level];
            auto [kept, newParent] = m_matches.children.try_emplace(parent);
            kept->second.keys.push_back(child);
            if (!newParent) break;
            kept->second.listed = m_listed[level];
            if (!m_matches.keep.insert(parent).second) break;
            child = parent;
        }
    }
    return m_pending.empty();
}

SegmentNameMatches FilterSegmentNames(HC_KEY root, std::string_view text,
                                      const std::atomic<bool>* cancel,
                                      const SegmentNameHits& onHits) {
    SegmentNameWalk walk(root, text);
    size_t handedOver = 0;
    size_t batch = 1;
    size_t sinceHandedOver = 0;
    bool cancelled = false;
    for (bool done = false; !done;) {
        if (cancel && cancel->load(std::memory_order_relaxed)) {
            cancelled = true;
            break;
        }
        done = walk.Step(kCancelStride);
        sinceHandedOver += kCancelStride;
        const std::span<const HC_KEY> hits = walk.Hits();
        while (hits.size() - handedOver >= batch ||
               (handedOver < hits.size() && (done || sinceHandedOver >= kLongestWait))) {
            const size_t count = std::min(batch, hits.size() - handedOver);
            if (onHits) onHits(hits.subspan(handedOver, count));
            handedOver += count;
            batch = std::min(batch * 2, kLargestBatch);
            sinceHandedOver = 0;
        }
    }
    SegmentNameMatches matches = walk.TakeMatches();
    matches.cancelled = cancelled;
    return matches;
}

} // namespace obsidra::scenetree
