// The rows and total line of the statistics dialog: components per minor category.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <obsidra/host.h>

namespace obsidra::components {

struct MinorCategoryRow {
    std::string name;
    std::int32_t count = 0;
    std::string countText;
};

struct MinorCategoryStatistics {
    // In the list's display order: ascending by name, letters compared without case, names that
    // compare equal in the host's order. Every host entry has its own row.
    std::vector<MinorCategoryRow> rows;
    std::int64_t total = 0;
    // "总构件个数->> N"
    std::string totalLine;
};

MinorCategoryStatistics MakeMinorCategoryStatistics(const MinorCategoryCounts& counts);
// Asks the host's model for its counts; a host without a model gives no rows.
MinorCategoryStatistics CollectMinorCategoryStatistics(ComponentHost* host);

} // namespace obsidra::components
