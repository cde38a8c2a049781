// The order and the portions in which an import meshes its products.
#pragma once

#include <cstddef>
#include <vector>

#include "host/ifc/ifc_model.h"

namespace obsidra::host::ifc {

// Products cut into chunks of about chunkSize (indices into data.products), from the lowest
// storey up and in file order within a storey, the products outside every storey last. An
// element and its parts, down to the parts of parts, share a chunk: openings are cut from the
// parts once the element is meshed, by the same converter.
std::vector<std::vector<int>> PlanMeshChunks(const ModelData& data, std::size_t chunkSize);

} // namespace obsidra::host::ifc
