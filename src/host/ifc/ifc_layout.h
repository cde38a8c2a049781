// Where the components of an imported model go: their floors and their categories. The scene
// and the project data are both laid out from this.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "host/ifc/ifc_mapping.h"
#include "host/ifc/ifc_model.h"

namespace obsidra::host::ifc {

// The floor of the components that no storey holds.
inline constexpr std::string_view kNoStoreyFloor = "无楼层";

struct FloorPlan {
    struct Floor {
        std::string name; // unique, also without regard to ASCII case
        int storey = -1;  // into ModelData::storeys; -1 for kNoStoreyFloor
        double elevation = 0;
        double height = 0;
        std::vector<int> products; // in file order
    };
    // Storeys from the lowest up (ties in file order), then kNoStoreyFloor if anything is on it.
    std::vector<Floor> floors;
    std::vector<int> floorOfProduct;
};

// A storey's height runs to the next storey's elevation; the top storey's to the top of what
// stands on it.
FloorPlan PlanFloors(const ModelData& data);

// Each product's discipline and categories. A part takes the discipline of the element it
// belongs to (a window's mullions are architecture), keeping its own categories.
std::vector<Classification> ClassifyProducts(const ModelData& data);

// Names that must differ without regard to ASCII case, as segment names in one owner do.
class NameSet {
public:
    // The name, with " (2)", " (3)", ... added until it differs from every name given before.
    std::string Unique(const std::string& name);

private:
    std::unordered_set<std::string> m_folded;
};

} // namespace obsidra::host::ifc
