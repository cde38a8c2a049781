// A mesh file as read into memory: what the reader hands on and the writer puts in the scene.
// Plain data, so that a file can be read on one thread and written by the database's own.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <obsidra/hc.h>

namespace obsidra::host::mesh {

struct Rgb {
    float red = 0;
    float green = 0;
    float blue = 0;
    bool operator==(const Rgb&) const = default;
};

// One mesh of the file: its faces as a shell's face list (vertex count, then the indices).
struct MeshShell {
    std::vector<HC_POINT> points;
    std::vector<int> faces;
    std::size_t faceCount = 0;
    std::optional<Rgb> colour; // the material's diffuse colour, when it has one
};

// A level of the file's hierarchy. The first node is the file's root, which the writer maps
// onto the import segment itself; every other names its parent, which comes before it.
struct MeshNode {
    std::string name;
    int parent = -1;
    // Row vectors, translation in the last row; empty for the identity.
    std::optional<std::array<float, 16>> matrix;
    std::vector<std::size_t> shells; // indices into MeshScene::shells; a mesh may be shared
};

struct MeshScene {
    std::vector<MeshShell> shells;
    std::vector<MeshNode> nodes;
    std::vector<std::string> warnings;

    // Faces of the file's meshes, each mesh counted once however many nodes use it.
    std::size_t FaceCount() const;
    // Faces as the scene holds them: each use of a mesh counted.
    std::size_t PlacedFaceCount() const;
};

} // namespace obsidra::host::mesh
