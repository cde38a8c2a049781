#include "host/mesh/mesh_scene.h"

namespace obsidra::host::mesh {

std::size_t MeshScene::FaceCount() const {
    std::size_t faces = 0;
    for (const MeshShell& shell : shells)
        faces += shell.faceCount;
    return faces;
}

std::size_t MeshScene::PlacedFaceCount() const {
    std::size_t faces = 0;
    for (const MeshNode& node : nodes)
        for (std::size_t index : node.shells)
            faces += shells[index].faceCount;
    return faces;
}

} // namespace obsidra::host::mesh
