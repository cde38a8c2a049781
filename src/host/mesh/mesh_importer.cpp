#include "host/mesh/mesh_importer.h"

#include "host/mesh/mesh_writer.h"

namespace obsidra::host::mesh {

namespace {

// Reading is nearly all of the time; writing into the database the rest.
constexpr double kReadShare = 0.9;

} // namespace

MeshImportResult ImportMeshFile(const std::string& path, HC_KEY segment,
                                const MeshReadOptions& options) {
    MeshReadOptions readOptions = options;
    if (options.progress)
        readOptions.progress = [&](double done) { return options.progress(kReadShare * done); };
    MeshReadResult read = ReadMeshFile(path, readOptions);
    MeshImportResult result;
    result.error = std::move(read.error);
    result.cancelled = read.cancelled;
    if (!read.scene) return result;
    MeshProgress writeProgress;
    if (options.progress)
        writeProgress = [&](double done) {
            return options.progress(kReadShare + (1 - kReadShare) * done);
        };
    WriteMeshScene(*read.scene, segment, writeProgress);
    result.imported = true;
    result.warnings = std::move(read.scene->warnings);
    result.faces = read.scene->PlacedFaceCount();
    return result;
}

} // namespace obsidra::host::mesh
