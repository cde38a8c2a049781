#pragma once

#include <functional>
#include <string>

#include <obsidra/hc.h>

namespace obsidra::scenetree {

// The lines "Edit" appends to a geometry item's text: its full coordinates, in the form its
// geometry descriptor reads back. The kinds "SHELL", "MESH", "CIRCULAR ARC", "POLYLINE",
// "POLYGON", "ELLIPTICAL ARC", "CIRCLE" and "CUTTING PLANE" are asked of isOfKind in that order,
// and the lines of every kind it accepts are appended.
std::string EditAppendix(HC_KEY key, const std::function<bool(const char* kind)>& isOfKind);

} // namespace obsidra::scenetree
