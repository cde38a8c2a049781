#pragma once

// The census and bounding lines the browser's panel shows for a selected node.

#include <string>
#include <vector>

#include <obsidra/hc.h>

namespace obsidra::scenetree {

// The geometry census of a segment's subtree: first "%d faces, %d triangles, %d vertices" with
// the zero counts left out (no line when all three are zero), then one line per geometry kind
// present, in a fixed order, always with the plural word ("1 shells").
std::vector<std::string> CensusLines(HC_KEY segment);

// "Bounding type=cuboid: { (x, y, z), (x, y, z) }" and the like, for segments, references,
// shells, meshes and polycylinders; a reference with one key shows its referee's bounds as
// "Referee Bounding ...". Empty when the key has no bounds or is of another type.
std::string BoundingText(HC_KEY key);

} // namespace obsidra::scenetree
