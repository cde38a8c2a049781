// A mesh file into a segment in one call, for callers on the database's thread: the input
// handler of "Load Into Segment", tests, benchmarks. The viewer reads and writes apart.
#pragma once

#include <string>
#include <vector>

#include <obsidra/hc.h>

#include "host/mesh/mesh_reader.h"
#include "mvo/io_manager.h"

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

// Reads every format assimp knows for "Load Into Segment"; errors and warnings go to stderr.
class MeshInputHandler final : public HInputHandler {
public:
    bool FileInputByKey(const char* filename, HC_KEY segment, const char* options) override;
};

} // namespace obsidra::host::mesh
