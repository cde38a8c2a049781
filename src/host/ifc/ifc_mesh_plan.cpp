#include "host/ifc/ifc_mesh_plan.h"

#include <algorithm>
#include <numeric>

namespace obsidra::host::ifc {

std::vector<std::vector<int>> PlanMeshChunks(const ModelData& data, std::size_t chunkSize) {
    const int count = static_cast<int>(data.products.size());
    // The topmost whole of each product; a cycle of wholes (a malformed file) stops the climb.
    std::vector<int> root(count);
    for (int i = 0; i < count; ++i) {
        int at = i;
        for (int step = 0; step < count && data.products[at].whole >= 0; ++step)
            at = data.products[at].whole;
        root[i] = at;
    }
    // Storeys by elevation where the file gives one; the others keep their file order.
    std::vector<int> storeyRank(data.storeys.size());
    {
        std::vector<int> order(data.storeys.size());
        std::iota(order.begin(), order.end(), 0);
        auto elevation = [&](int s) {
            return data.storeys[s].hasElevation ? data.storeys[s].elevation : 0.0;
        };
        std::stable_sort(order.begin(), order.end(),
                         [&](int a, int b) { return elevation(a) < elevation(b); });
        for (std::size_t rank = 0; rank < order.size(); ++rank)
            storeyRank[order[rank]] = static_cast<int>(rank);
    }
    auto rankOf = [&](int product) {
        const int storey = data.products[product].storey;
        return storey >= 0 ? storeyRank[storey] : static_cast<int>(storeyRank.size());
    };
    // Groups, each led by its root, placed by the root's storey.
    std::vector<std::vector<int>> groups(count);
    for (int i = 0; i < count; ++i)
        groups[root[i]].push_back(i);
    std::vector<int> leaders;
    for (int i = 0; i < count; ++i)
        if (!groups[i].empty()) leaders.push_back(i);
    std::stable_sort(leaders.begin(), leaders.end(),
                     [&](int a, int b) { return rankOf(a) < rankOf(b); });

    std::vector<std::vector<int>> chunks;
    std::vector<int> chunk;
    for (int leader : leaders) {
        chunk.insert(chunk.end(), groups[leader].begin(), groups[leader].end());
        if (chunk.size() >= chunkSize) {
            chunks.push_back(std::move(chunk));
            chunk.clear();
        }
    }
    if (!chunk.empty()) chunks.push_back(std::move(chunk));
    return chunks;
}

} // namespace obsidra::host::ifc
