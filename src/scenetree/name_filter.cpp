#include "scenetree/name_filter.h"

#include <algorithm>
#include <string>
#include <vector>

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

SegmentNameMatches FilterSegmentNames(HC_KEY root, std::string_view text,
                                      const std::atomic<bool>* cancel,
                                      const SegmentNameHits& onHits) {
    SegmentNameMatches matches;
    if (text.empty() || !HC_Fast_Segment_Name(root, nullptr)) return matches;
    const std::string lowerText = text::ToLower(text);

    std::vector<HC_KEY> pendingHits;
    size_t batch = 1;
    size_t sinceHandedOver = 0;
    auto handOver = [&] {
        if (onHits && !pendingHits.empty()) onHits(pendingHits);
        pendingHits.clear();
        sinceHandedOver = 0;
    };

    // Depth first without recursion: segments still to visit with their depth, and the path
    // from the root to the one being visited, whose segments a hit keeps.
    struct Pending {
        HC_KEY key;
        size_t depth;
    };
    std::vector<Pending> pending;
    std::vector<HC_KEY> path{root};
    std::vector<HC_KEY> children;
    auto pushChildren = [&](HC_KEY segment, size_t depth) {
        const int count = HC_Fast_Subsegment_Count(segment);
        if (count == 0) return;
        children.resize(static_cast<size_t>(count));
        children.resize(
            static_cast<size_t>(HC_Fast_Subsegment_Keys(segment, 0, count - 1, children.data())));
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            pending.push_back({*child, depth});
    };
    pushChildren(root, 1);

    for (size_t visited = 0; !pending.empty(); ++visited) {
        if (cancel && visited % kCancelStride == 0 && cancel->load(std::memory_order_relaxed)) {
            matches.cancelled = true;
            break;
        }
        const auto [key, depth] = pending.back();
        pending.pop_back();
        path.resize(depth);
        path.push_back(key);

        size_t length = 0;
        const char* name = HC_Fast_Segment_Name(key, &length);
        if (name && Holds({name, length}, lowerText)) {
            ++matches.hits;
            // Up the path until a segment that is kept already: its own path is kept with it.
            for (auto step = path.rbegin(); step != path.rend(); ++step)
                if (!matches.keep.insert(*step).second) break;
            pendingHits.push_back(key);
            if (pendingHits.size() >= batch) {
                handOver();
                batch = std::min(batch * 2, kLargestBatch);
            }
        }
        if (++sinceHandedOver >= kLongestWait) handOver();
        pushChildren(key, depth + 1);
    }
    handOver();
    return matches;
}

} // namespace obsidra::scenetree
