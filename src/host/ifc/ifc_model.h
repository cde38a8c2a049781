// What the importer takes from an IFC file, in plain types: the bridge between the part that
// talks to IFC++ (ifc_source) and the parts that write the scene and the project data.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <obsidra/hc.h>

#include "host/ifc/ifc_mapping.h"

namespace obsidra::host::ifc {

// Faces of one colour in the product's own coordinates, as the scene's shells take them: a
// face list of a vertex count, then that many point indices, for each face.
struct MeshPart {
    Rgba colour;
    bool coloured = false; // the colour comes from the file, not from the category
    std::vector<HC_POINT> points;
    std::vector<int> faces;
};

struct PropertySetData {
    std::string globalId;
    std::string name;
    std::string ifcClass; // IfcPropertySet or IfcElementQuantity
    std::vector<std::pair<std::string, std::string>> values;
};

struct ProductData {
    int entityId = 0;
    std::string ifcClass;
    std::string globalId;
    std::string name;
    std::string objectType;
    std::string tag;
    std::string predefinedType; // the element's own, else its type object's
    std::string typeClass;
    std::string typeName;
    std::string typeGlobalId;
    std::optional<bool> isExternal;
    std::optional<bool> loadBearing;
    std::optional<Discipline> systemDiscipline;
    bool isElement = false;     // an IfcElement, which may stand for its parts without a mesh
    int storey = -1;            // index into ModelData::storeys; -1 when in none
    int whole = -1;             // the element this one is a part of (by aggregation), or -1
    std::vector<int> connected; // products joined by connection relations, in file order
    std::vector<PropertySetData> propertySets;
    // Row-major, row vectors, translation in the last row: object to world coordinates.
    std::array<double, 16> transform{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    std::vector<MeshPart> meshes;
};

struct StoreyData {
    int entityId = 0;
    std::string globalId;
    std::string name;
    double elevation = 0; // metres
    // False when the file gives none: meshing then takes the height of the storey's placement.
    bool hasElevation = false;
};

struct ModelData {
    std::string schema; // as the file's header names it: IFC2X3, IFC4, ...
    std::string projectName;
    std::string projectType;
    std::string projectGlobalId;
    std::vector<StoreyData> storeys;   // in file order
    std::vector<ProductData> products; // in file order
};

// Leaves only the products that become components: those with a mesh and the elements they
// are parts of. Indices between products are renumbered; links to dropped products go.
void KeepComponents(ModelData& data);

} // namespace obsidra::host::ifc
