// Writes an imported model into the scene database through the HC_ interface.
#pragma once

#include <string>
#include <vector>

#include <obsidra/hc.h>

#include "host/ifc/ifc_layout.h"
#include "host/ifc/ifc_model.h"
#include "host/ifc/ifc_progress.h"

namespace obsidra::host::ifc {

// The segment an import goes under, as found before anything is written.
struct ImportTarget {
    std::string path;
    HC_KEY key = 0;               // 0 while the segment does not exist yet
    std::string firstMissingPath; // the topmost level that the import will create
};

// Checks that path is an absolute path of plain names and that the segment it names, if it
// exists, holds no subsegments and no geometry. Nothing is created.
bool FindImportTarget(const std::string& path, ImportTarget& target, std::string& error);

struct SceneKeys {
    HC_KEY root = 0;
    std::vector<HC_KEY> floors;              // one per floor of the plan
    std::vector<HC_KEY> products;            // the segment of each product
    std::vector<std::vector<HC_KEY>> shells; // each product's shells, one per mesh part
};

// One segment per floor under the target, named by the floor; in it one segment per product,
// named by its GlobalId, with its user options, placement and shells. False when cancelled or
// refused by the database, and then everything written is gone again.
bool WriteScene(const ImportTarget& target, const ModelData& data, const FloorPlan& plan,
                const std::vector<Classification>& classes, ImportProgress& progress,
                SceneKeys& keys, std::string& error);

// A product's placement, colours and shells (one per mesh part) into the open segment; the
// category colours the parts the file leaves uncoloured. False, with the reason, when the
// database refuses a shell.
bool WriteProductGeometry(const ProductData& p, const Classification& category,
                          std::vector<HC_KEY>& shells, std::string& error);

// The colour option string of a colour: "faces=(r=0.902 g=0.871 b=0.784)", and for a
// translucent one "faces=(diffuse=(r=... g=... b=...),transmission=(r=t g=t b=t))".
std::string ColourOptions(const Rgba& colour);

} // namespace obsidra::host::ifc
