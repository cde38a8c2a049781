#pragma once

#include <string>
#include <vector>

#include <obsidra/hc.h>

namespace hc::testing {

// Builds, at path, a scene of many small segments of the kinds an optimisation restructures:
// repeated shells, modelling matrices at several levels, colours and visibilities on segments and
// items, includes of a part kept in "/include library", user options and nameless segments.
// groups sets how many top-level segments it has (each with a few below it).
HC_KEY BuildOptimizeScene(const char* path, int groups);

// What a subtree draws, one line per shell face or other item: its net colour and visibility and
// its points in world space (rounded), sorted, each line once. Two subtrees that give the same
// lines draw the same. Includes are followed; the subtree must not include itself.
std::vector<std::string> DrawnScene(HC_KEY segment);

} // namespace hc::testing
