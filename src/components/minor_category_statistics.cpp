#include "components/minor_category_statistics.h"

#include <algorithm>
#include <string_view>

#include "text/text.h"

namespace obsidra::components {

using text::AppendFormat;

MinorCategoryStatistics MakeMinorCategoryStatistics(const MinorCategoryCounts& counts) {
    struct Entry {
        std::string sortKey;
        MinorCategoryRow row;
    };
    std::vector<Entry> entries;
    entries.reserve(counts.size());
    MinorCategoryStatistics statistics;
    for (const auto& [name, count] : counts) {
        // A sorted list compares its texts without regard to the case of Latin letters.
        Entry entry{text::ToLower(name), {name, count, {}}};
        AppendFormat(entry.row.countText, "%d", count);
        entries.push_back(std::move(entry));
        statistics.total += count;
    }
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return Utf16Less{}(a.sortKey, b.sortKey);
    });
    statistics.rows.reserve(entries.size());
    for (Entry& entry : entries)
        statistics.rows.push_back(std::move(entry.row));
    AppendFormat(statistics.totalLine, "总构件个数->> %lld",
                 static_cast<long long>(statistics.total));
    return statistics;
}

MinorCategoryStatistics CollectMinorCategoryStatistics(ComponentHost* host) {
    MinorCategoryCounts counts;
    ComponentHost::Model* model = host ? host->GetModel() : nullptr;
    if (model) model->CollectMinorCategoryCounts(counts);
    return MakeMinorCategoryStatistics(counts);
}

} // namespace obsidra::components
