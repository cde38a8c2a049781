#include "scenetree/database_lists.h"

#include <algorithm>

#include <obsidra/hc_fastpath.h>

#include "text/text.h"

namespace obsidra::scenetree {

std::vector<HC_KEY> SubsegmentKeys(HC_KEY segment, int first, int last) {
    int count = HC_Fast_Subsegment_Count(segment);
    if (first < 0 || last < first || first >= count) return {};
    // Room for the page as the segment has it: a caller may ask past its end.
    std::vector<HC_KEY> keys(static_cast<size_t>(std::min(last, count - 1) - first + 1));
    HC_Fast_Subsegment_Keys(segment, first, last, keys.data());
    return keys;
}

int SubsegmentPosition(HC_KEY segment, HC_KEY key) {
    return HC_Fast_Subsegment_Position(segment, key);
}

std::string SegmentOwnName(HC_KEY segment) {
    size_t length = 0;
    const char* name = HC_Fast_Segment_Name(segment, &length);
    if (!name) return {};
    if (length) return std::string(name, length);
    return "@" + text::KeyText(HC_Show_Original_Key(segment));
}

SegmentHolds WhatSegmentHolds(HC_KEY segment) {
    unsigned holds = HC_Fast_Segment_Holds(segment);
    return {.subsegments = (holds & HC_HOLDS_SUBSEGMENTS) != 0,
            .links = (holds & HC_HOLDS_LINKS) != 0,
            .geometry = (holds & HC_HOLDS_GEOMETRY) != 0,
            .definitions = (holds & HC_HOLDS_DEFINITIONS) != 0,
            .staticModel = (holds & HC_HOLDS_STATIC_MODEL) != 0};
}

} // namespace obsidra::scenetree
