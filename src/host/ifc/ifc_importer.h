// Imports IFC files (IFC2x3 and IFC4, read and meshed by IFC++) into the scene database and
// into the project data of the component viewer. docs/ifc.md describes the result.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/ifc/ifc_building.h"
#include "host/ifc/ifc_mesh_options.h"
#include "host/ifc/ifc_progress.h"

namespace obsidra::host::ifc {

struct ImportOptions {
    // An absolute path of plain names. The segment is created if it does not exist; if it
    // does, it must hold no subsegments and no geometry.
    std::string segment = "/ifc";
    ProgressCallback progress;
};

struct ImportResult {
    // Empty when the import failed or was cancelled; the scene is then as it was.
    std::optional<IfcBuilding> building;
    std::string error;
    bool cancelled = false;
    // What IFC++ reported without failing the import: products it could not mesh, and so on.
    std::vector<std::string> warnings;
};

ImportResult ImportIfcFile(const std::string& path, const ImportOptions& options = {});

// The same for the text of a file; name names the project when the file does not.
ImportResult ImportIfcText(std::string text, const std::string& name,
                           const ImportOptions& options = {});

struct ModelData;

// An IFC file read, parsed and meshed, not yet in the scene. Preparing touches no scene
// database, so a host makes it on a worker thread and writes it on the thread that owns the
// scene; the two steps together are ImportIfcFile.
struct PreparedIfc {
    PreparedIfc();
    PreparedIfc(PreparedIfc&&) noexcept;
    PreparedIfc& operator=(PreparedIfc&&) noexcept;
    ~PreparedIfc();

    std::string name;
    // Null when the preparation failed or was cancelled; failure then says why.
    std::unique_ptr<ModelData> model;
    ImportResult failure;
    std::vector<std::string> warnings;
};

// progress hears the reading, parsing and meshing phases.
PreparedIfc PrepareIfcFile(const std::string& path, const ProgressCallback& progress = {},
                           const MeshOptions& mesh = {});
PreparedIfc PrepareIfcText(std::string text, const std::string& name,
                           const ProgressCallback& progress = {}, const MeshOptions& mesh = {});
// Writes a prepared building below options.segment (progress hears the building phase); a
// failed preparation gives its own result and leaves the scene as it was.
ImportResult WriteIfcBuilding(PreparedIfc prepared, const ImportOptions& options = {});

// Why the text cannot be an IFC file (not a STEP exchange file, or cut short), or empty.
std::string CheckStepText(std::string_view text);

} // namespace obsidra::host::ifc
