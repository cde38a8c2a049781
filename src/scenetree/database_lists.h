#pragma once

// Questions about a segment's contents answered from the database's own lists, where the C
// interface would cost far more than the answer: a contents search snapshots every item when it
// begins, so listing one page of a segment with a million children, or finding that a leaf
// segment holds nothing a search looks for, would cost a whole snapshot each time.

#include <string>
#include <vector>

#include <obsidra/hc.h>

namespace obsidra::scenetree {

// The keys of subsegments first to last (0-based, both included) of the segment, in the order
// and with the keys a "segments" contents search gives them; fewer when the segment has fewer.
std::vector<HC_KEY> SubsegmentKeys(HC_KEY segment, int first, int last);

// The 1-based place of a subsegment in its owner's listing; 0 when key is no subsegment of it.
int SubsegmentPosition(HC_KEY segment, HC_KEY key);

// A segment's own name as the last level of its pathname shows it: "@" and the key text for
// a nameless segment, "/" for the root; the name search asks it of every segment it passes.
std::string SegmentOwnName(HC_KEY segment);

// What a segment holds, by list: a search step that can find nothing in a segment skips it.
struct SegmentHolds {
    bool subsegments = false;
    bool links = false; // includes, styles, named styles, references
    bool geometry = false;
    bool definitions = false;
    bool staticModel = false;
};
SegmentHolds WhatSegmentHolds(HC_KEY segment);

} // namespace obsidra::scenetree
