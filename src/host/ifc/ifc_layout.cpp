#include "host/ifc/ifc_layout.h"

#include <algorithm>
#include <numeric>

#include "host/ifc/ifc_text.h"

namespace obsidra::host::ifc {

namespace {

// The highest world z of the product's geometry, if it has any.
std::optional<double> TopOf(const ProductData& p) {
    std::optional<double> top;
    const std::array<double, 16>& m = p.transform;
    for (const MeshPart& part : p.meshes)
        for (const HC_POINT& point : part.points) {
            const double z = point.x * m[2] + point.y * m[6] + point.z * m[10] + m[14];
            top = top ? std::max(*top, z) : z;
        }
    return top;
}

} // namespace

std::string NameSet::Unique(const std::string& name) {
    std::string candidate = name;
    for (int n = 2; !m_folded.insert(FoldAsciiCase(candidate)).second; ++n)
        candidate = name + " (" + std::to_string(n) + ")";
    return candidate;
}

FloorPlan PlanFloors(const ModelData& data) {
    FloorPlan plan;
    std::vector<int> order(data.storeys.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return data.storeys[a].elevation < data.storeys[b].elevation;
    });
    std::vector<int> floorOfStorey(data.storeys.size(), -1);
    NameSet names;
    const bool anyOutside = std::any_of(data.products.begin(), data.products.end(),
                                        [](const ProductData& p) { return p.storey < 0; });
    // Reserved first, so that a storey of the same name gives way.
    if (anyOutside) names.Unique(std::string(kNoStoreyFloor));
    for (int storey : order) {
        const StoreyData& s = data.storeys[storey];
        std::string name = s.name;
        const std::size_t first = name.find_first_not_of(' ');
        name = first == std::string::npos ? std::string() : name.substr(first);
        while (!name.empty() && name.back() == ' ')
            name.pop_back();
        if (name.empty()) name = "楼层" + std::to_string(plan.floors.size() + 1);
        floorOfStorey[storey] = static_cast<int>(plan.floors.size());
        plan.floors.push_back({names.Unique(name), storey, s.elevation, 0, {}});
    }
    if (anyOutside) plan.floors.push_back({std::string(kNoStoreyFloor), -1, 0, 0, {}});

    plan.floorOfProduct.resize(data.products.size());
    for (std::size_t i = 0; i < data.products.size(); ++i) {
        const int storey = data.products[i].storey;
        const int floor =
            storey >= 0 ? floorOfStorey[storey] : static_cast<int>(plan.floors.size()) - 1;
        plan.floorOfProduct[i] = floor;
        plan.floors[floor].products.push_back(static_cast<int>(i));
    }

    const std::size_t storeyCount = data.storeys.size();
    for (std::size_t f = 0; f + 1 < storeyCount; ++f)
        plan.floors[f].height = plan.floors[f + 1].elevation - plan.floors[f].elevation;
    if (storeyCount > 0) {
        FloorPlan::Floor& top = plan.floors[storeyCount - 1];
        std::optional<double> highest;
        for (int product : top.products)
            if (const std::optional<double> z = TopOf(data.products[product]))
                highest = highest ? std::max(*highest, *z) : *z;
        if (highest && *highest > top.elevation) top.height = *highest - top.elevation;
    }
    return plan;
}

std::vector<Classification> ClassifyProducts(const ModelData& data) {
    std::vector<Classification> result;
    result.reserve(data.products.size());
    for (const ProductData& p : data.products)
        result.push_back(Classify({p.ifcClass, p.typeClass, p.predefinedType, p.isExternal,
                                   p.loadBearing, p.systemDiscipline}));
    for (std::size_t i = 0; i < data.products.size(); ++i) {
        int whole = data.products[i].whole;
        int top = -1;
        for (std::size_t step = 0; whole >= 0 && step < data.products.size(); ++step) {
            top = whole;
            whole = data.products[whole].whole;
        }
        if (top >= 0) result[i].discipline = result[top].discipline;
    }
    return result;
}

} // namespace obsidra::host::ifc
