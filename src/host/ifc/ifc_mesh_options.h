// How an import meshes its products: on how many processes, and who hears of them as they are
// done (a viewer that shows a building while it is still being meshed).
#pragma once

#include <functional>
#include <vector>

namespace obsidra::host::ifc {

struct ModelData;

struct MeshOptions {
    // Processes that mesh, the importing one among them; 0 for one per core. The others are
    // forked once the file is parsed, each meshing with its own copy of the model; when fork
    // fails the importing process meshes alone.
    int workers = 0;
    // Told, on the importing thread, of products whose meshes and placements are now in model
    // (indices into model.products), while others are still being meshed: from the lowest
    // storey up, an element with its parts always together.
    std::function<void(const ModelData& model, const std::vector<int>& products)> meshed;
};

} // namespace obsidra::host::ifc
