// What a mesh file says it holds, where its format states it, so that an import can tell when
// faces were lost on the way.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace obsidra::host::mesh {

struct StatedFaces {
    std::size_t count = 0;
    std::string source; // where the count comes from: "its header", ...
};

// A binary STL's triangle count, a PLY header's face element count, the triangles a glTF's
// accessors count in its meshes; nothing for a format that does not state it or a file that
// cannot be read.
std::optional<StatedFaces> ReadStatedFaces(const std::string& path);

} // namespace obsidra::host::mesh
