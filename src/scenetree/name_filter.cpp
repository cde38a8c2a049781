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
    : m_text(text), m_lowerText(text::ToLower(text)), m_path{root} {
    if (!text.empty() && HC_Fast_Segment_Name(root, nullptr)) PushChildren(root, 1);
}

void SegmentNameWalk::PushChildren(HC_KEY segment, size_t depth) {
    const int count = HC_Fast_Subsegment_Count(segment);
    if (count == 0) return;
    m_children.resize(static_cast<size_t>(count));
    m_children.resize(
        static_cast<size_t>(HC_Fast_Subsegment_Keys(segment, 0, count - 1, m_children.data())));
    for (auto child = m_children.rbegin(); child != m_children.rend(); ++child)
        m_pending.push_back({*child, depth});
}

bool SegmentNameWalk::Step(size_t budget) {
    for (; budget > 0 && !m_pending.empty(); --budget) {
        const auto [key, depth] = m_pending.back();
        m_pending.pop_back();
        m_path.resize(depth);
        m_path.push_back(key);

        size_t length = 0;
        const char* name = HC_Fast_Segment_Name(key, &length);
        if (!name) continue; // deleted since its parent was listed
        if (Holds({name, length}, m_lowerText)) {
            ++m_matches.hits;
            m_hits.push_back(key);
            // Up the path until a segment that is a parent already: its own path is kept with
            // it. (A segment kept as a hit only becomes a parent here.)
            m_matches.keep.insert(key);
            for (auto step = m_path.rbegin() + 1; step != m_path.rend(); ++step) {
                m_matches.keep.insert(*step);
                if (!m_matches.parents.insert(*step).second) break;
            }
        }
        PushChildren(key, depth + 1);
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
    while (!cancelled) {
        const bool done = walk.Step(kCancelStride);
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
        if (done) break;
        cancelled = cancel && cancel->load(std::memory_order_relaxed);
    }
    SegmentNameMatches matches = walk.TakeMatches();
    matches.cancelled = cancelled;
    return matches;
}

} // namespace obsidra::scenetree
