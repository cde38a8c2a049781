// Reads the mesh formats assimp knows into memory, touching no scene, so that it can run on a
// worker thread while the database stays with the thread that draws.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/mesh/mesh_scene.h"

namespace obsidra::host::mesh {

// Told the fraction done (0 to 1, never decreasing); returns false to cancel.
using MeshProgress = std::function<bool(double fraction)>;

struct MeshReadOptions {
    // One node holding every mesh in world coordinates, instead of the file's hierarchy.
    bool flatten = false;
    // Turn a model whose format has +Y up (every format assimp reads but STL and 3MF, whose up
    // is +Z) so that its up is the scene's +Z, by a matrix on the file's root.
    bool zUp = false;
    MeshProgress progress;
};

struct MeshReadResult {
    std::optional<MeshScene> scene; // empty when the file could not be read, or on cancel
    std::string error;              // names the file and what was wrong with it
    bool cancelled = false;
};

MeshReadResult ReadMeshFile(const std::string& path, const MeshReadOptions& options = {});

// The extensions assimp reads, lower case, without the dot.
std::vector<std::string> MeshExtensions();
bool IsMeshExtension(std::string_view extension);

} // namespace obsidra::host::mesh
