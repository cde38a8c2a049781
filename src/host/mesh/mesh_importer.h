// A mesh file into a segment in one call, for callers on the database's thread: tests and
// benchmarks. The viewer reads on a worker thread and writes apart.
#pragma once

#include <string>
#include <vector>

#include <obsidra/hc.h>

#include "host/mesh/mesh_reader.h"

namespace obsidra::host::mesh {

struct MeshImportResult {
    bool imported = false; // else the segment is as it was
    std::string error;
    bool cancelled = false;
    std::vector<std::string> warnings; // faces lost, points and lines left out
    std::size_t faces = 0;             // faces placed in the scene
};

MeshImportResult ImportMeshFile(const std::string& path, HC_KEY segment,
                                const MeshReadOptions& options = {});

} // namespace obsidra::host::mesh
