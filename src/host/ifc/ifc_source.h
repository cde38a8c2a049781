// An IFC file as IFC++ reads and meshes it. The only part of the importer that sees IFC++:
// it hands on what it finds as the plain data of ifc_model.h.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/ifc/ifc_mesh_options.h"
#include "host/ifc/ifc_model.h"
#include "host/ifc/ifc_progress.h"

namespace obsidra::host::ifc {

// The messages IFC++ gave: errors stop an import, warnings travel with its result.
struct SourceMessages {
    std::vector<std::string> errors;
    std::vector<std::string> warnings;
};

class IfcSource {
public:
    ~IfcSource();
    IfcSource(const IfcSource&) = delete;
    IfcSource& operator=(const IfcSource&) = delete;

    // Parses the text of an IFC (STEP) file. Null when cancelled or when IFC++ reported errors
    // (in messages) or found no IfcProject (error).
    static std::unique_ptr<IfcSource> Parse(std::string text, ImportProgress& progress,
                                            SourceMessages& messages, std::string& error);

    // The project, the storeys and every product but openings, with their facts, property
    // sets, spatial containment, aggregation and connections. No meshes yet.
    ModelData Collect() const;

    // Meshes the products of data (found by entity id) in their own coordinates, with their
    // placements and colours. False when cancelled.
    bool Mesh(ModelData& data, ImportProgress& progress, SourceMessages& messages,
              const MeshOptions& options = {});

    struct State;

private:
    explicit IfcSource(std::unique_ptr<State> state);

    std::unique_ptr<State> m_state;
};

} // namespace obsidra::host::ifc
