#pragma once

// HC_Optimize_Segment_Tree: passes that restructure a subtree so that it holds fewer segments
// and items, while it draws the same (docs/optimize.md).

#include <string_view>

#include "hc/database.h"

namespace hc {

// What an optimisation's option string asks for.
struct OptimizeChoices {
    bool processIncludes = false;
    bool expandIncludes = false;
    bool collapseMatrices = false;
    bool localizeMatrices = false;
    bool removeDuplicateShells = false;
    bool extractAttributes = false;
    bool generateMapping = false;
    bool discardNames = false;
    bool recordNames = false;
    bool sequenceNames = false;
    bool mergeShells = false;
    bool instanceShells = false;
    bool discardUserData = false;
    bool mergeUserData = false;
    bool localizeUserData = false;
    bool reorganizeAttributes = false;
    bool reorganizeSpatial = false;
};

// Reads an option string; false, with what was wrong reported, when an option or one of its
// values is unknown or the text does not parse.
bool ParseOptimizeOptions(std::string_view text, OptimizeChoices& choices);

// Optimises the subtree below root (the root segment keeps its name, key and place).
void OptimizeSegmentTree(Database& db, Slot root, const OptimizeChoices& choices);

} // namespace hc
