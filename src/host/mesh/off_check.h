// An OFF file checked before assimp reads it: assimp's reader passes over a face line whose
// corner count is 0 or more than 9 and then crashes on the lines after it, and a crash on the
// viewer's worker thread would take the application down.
#pragma once

#include <istream>
#include <string>

namespace obsidra::host::mesh {

// What is wrong with the OFF file in the stream ("line 9: ..."), or empty when its counts, its
// vertex lines (three coordinates) and its face lines (1 to 9 corners among the vertices) are
// as assimp reads them. Blank lines are passed over, and # comments before the counts: assimp
// reads a comment among the vertices or faces as one of them.
std::string OffProblem(std::istream& in);

} // namespace obsidra::host::mesh
