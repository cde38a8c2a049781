#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "components/minor_category_statistics.h"
#include "components/testing/memory_component_host.h"
#include "components/testing/synthetic_building.h"

namespace obsidra::components {
namespace {

std::vector<std::string> Rows(const MinorCategoryStatistics& statistics) {
    std::vector<std::string> rows;
    for (const MinorCategoryRow& row : statistics.rows)
        rows.push_back(row.name + "|" + row.countText);
    return rows;
}

TEST(MinorCategoryStatistics, RowsAndTotal) {
    const struct {
        const char* name;
        MinorCategoryCounts counts;
        std::vector<std::string> rows;
        std::string totalLine;
    } cases[] = {
        {"no categories", {}, {}, "总构件个数->> 0"},
        {"one row per category, ascending",
         {{"梁", 3}, {"外墙", 12}, {"板", 0}},
         {"外墙|12", "板|0", "梁|3"},
         "总构件个数->> 15"},
        {"names equal but for letter case keep a row each, in the host's order",
         {{"wall", 1}, {"Wall", 2}, {"Beam", 4}, {"WALL", 8}},
         {"Beam|4", "WALL|8", "Wall|2", "wall|1"},
         "总构件个数->> 15"},
        {"letter case does not decide the order",
         {{"b", 1}, {"A", 2}, {"C", 3}},
         {"A|2", "b|1", "C|3"},
         "总构件个数->> 6"},
        {"negative counts are shown as the host gives them",
         {{"x", -2}, {"y", 5}},
         {"x|-2", "y|5"},
         "总构件个数->> 3"},
        {"the total does not overflow",
         {{"a", 2147483647}, {"b", 2147483647}},
         {"a|2147483647", "b|2147483647"},
         "总构件个数->> 4294967294"},
    };
    for (const auto& c : cases) {
        const MinorCategoryStatistics statistics = MakeMinorCategoryStatistics(c.counts);
        EXPECT_EQ(Rows(statistics), c.rows) << c.name;
        EXPECT_EQ(statistics.totalLine, c.totalLine) << c.name;
    }
}

TEST(MinorCategoryStatistics, ComeFromTheHostModel) {
    testing::BuildingShape shape;
    shape.floors = 3;
    shape.componentsPerGroup = 5;
    testing::MemoryComponentHost host(testing::MakeSyntheticBuilding(shape));

    const MinorCategoryStatistics statistics = CollectMinorCategoryStatistics(&host);

    ASSERT_EQ(statistics.rows.size(), 8u);
    EXPECT_EQ(statistics.rows.front().name, "小类01-01-01");
    EXPECT_EQ(statistics.rows.front().countText, "15");
    EXPECT_EQ(statistics.total, static_cast<std::int64_t>(shape.ComponentCount()));
    EXPECT_EQ(CollectMinorCategoryStatistics(nullptr).totalLine, "总构件个数->> 0");
}

} // namespace
} // namespace obsidra::components
