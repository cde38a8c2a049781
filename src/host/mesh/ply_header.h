// A PLY file's header checked before assimp reads the file: assimp's reader can loop forever on
// a header it cannot make sense of (a property of a type it does not know), and a read on the
// viewer's worker thread cannot be stopped from outside.
#pragma once

#include <istream>
#include <string>

namespace obsidra::host::mesh {

// What is wrong with the header at the start of the stream ("line 7: ..."), or empty when its
// format, element and property lines up to "end_header" are as the format has them. Other lines
// are passed over, as readers do: writers put free text there.
std::string PlyHeaderProblem(std::istream& in);

} // namespace obsidra::host::mesh
