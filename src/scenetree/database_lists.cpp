#include "scenetree/database_lists.h"

#include <algorithm>
#include <cstdio>

#include "hc/database.h"

namespace obsidra::scenetree {

namespace {

const hc::Segment* SegmentOf(const hc::Database& db, HC_KEY key) {
    hc::Slot slot = db.Resolve(key);
    return slot == hc::kNoSlot ? nullptr : db.GetSegment(slot);
}

} // namespace

// The list is doubly linked, so a page is reached from whichever end of it is nearer.
std::vector<HC_KEY> SubsegmentKeys(HC_KEY segment, int first, int last) {
    std::vector<HC_KEY> keys;
    hc::Database& db = hc::Current();
    const hc::Segment* owner = SegmentOf(db, segment);
    if (!owner || first < 0 || last < first) return keys;
    int count = static_cast<int>(owner->segments.count);
    if (last >= count) last = count - 1;
    if (first > last) return keys;
    keys.reserve(static_cast<size_t>(last - first + 1));
    if (first <= count - 1 - last) {
        hc::Slot slot = owner->segments.first;
        for (int index = 0; index < first; ++index)
            slot = db.Next(slot);
        for (int index = first; index <= last; ++index, slot = db.Next(slot))
            keys.push_back(db.KeyOf(slot));
    } else {
        hc::Slot slot = owner->segments.last;
        for (int index = count - 1; index > last; --index)
            slot = db.Prev(slot);
        for (int index = last; index >= first; --index, slot = db.Prev(slot))
            keys.push_back(db.KeyOf(slot));
        std::reverse(keys.begin(), keys.end());
    }
    return keys;
}

// The place is unknown, so the walk goes from both ends at once and meets the key from the
// nearer one.
int SubsegmentPosition(HC_KEY segment, HC_KEY key) {
    hc::Database& db = hc::Current();
    const hc::Segment* owner = SegmentOf(db, segment);
    hc::Slot wanted = db.Resolve(key);
    if (!owner || wanted == hc::kNoSlot || db.Get(wanted)->owner != db.Resolve(segment)) return 0;
    int count = static_cast<int>(owner->segments.count);
    hc::Slot front = owner->segments.first;
    hc::Slot back = owner->segments.last;
    for (int index = 0; index <= count - 1 - index; ++index) {
        if (front == wanted) return index + 1;
        if (back == wanted) return count - index;
        front = db.Next(front);
        back = db.Prev(back);
    }
    return 0;
}

std::string SegmentOwnName(HC_KEY segment) {
    hc::Database& db = hc::Current();
    const hc::Segment* found = SegmentOf(db, segment);
    if (!found) return {};
    if (found->slot == db.Root()) return "/";
    if (!found->name.empty()) return found->name;
    char text[24];
    std::snprintf(text, sizeof text, "@%llX",
                  static_cast<unsigned long long>(HC_Show_Original_Key(segment)));
    return text;
}

SegmentHolds WhatSegmentHolds(HC_KEY segment) {
    hc::Database& db = hc::Current();
    const hc::Segment* owner = SegmentOf(db, segment);
    if (!owner) return {};
    SegmentHolds holds;
    holds.subsegments = owner->segments.count != 0;
    holds.links = owner->links.count != 0;
    holds.geometry = owner->geometry.count != 0;
    holds.definitions = owner->definitions != nullptr;
    holds.staticModel = owner->staticModel != hc::kNoSlot;
    return holds;
}

} // namespace obsidra::scenetree
