#include "host/ifc/ifc_model.h"

namespace obsidra::host::ifc {

void KeepComponents(ModelData& data) {
    const std::size_t count = data.products.size();
    std::vector<bool> keep(count, false);
    // A meshed product is a component, and so is every element it is a part of, up the
    // aggregation, so that a stair without a body of its own still holds its flights.
    for (std::size_t i = 0; i < count; ++i) {
        if (data.products[i].meshes.empty()) continue;
        int at = static_cast<int>(i);
        for (std::size_t step = 0; at >= 0 && step <= count && !keep[at]; ++step) {
            keep[at] = true;
            at = data.products[at].whole;
        }
    }
    std::vector<int> newIndex(count, -1);
    int kept = 0;
    for (std::size_t i = 0; i < count; ++i)
        if (keep[i]) newIndex[i] = kept++;
    std::vector<ProductData> products;
    products.reserve(kept);
    for (std::size_t i = 0; i < count; ++i) {
        if (!keep[i]) continue;
        ProductData& p = data.products[i];
        p.whole = p.whole >= 0 ? newIndex[p.whole] : -1;
        std::vector<int> connected;
        for (int other : p.connected)
            if (newIndex[other] >= 0) connected.push_back(newIndex[other]);
        p.connected = std::move(connected);
        products.push_back(std::move(p));
    }
    data.products = std::move(products);
}

} // namespace obsidra::host::ifc
