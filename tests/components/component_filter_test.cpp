#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "components/component_filter.h"
#include "components/testing/memory_component_host.h"
#include "sample_building.h"

namespace obsidra::components {
namespace {

using components::testing::MemoryComponentHost;

// The kept tree as "label" lines, indented as DumpTree does, walked through the filter's lists.
void Dump(const ComponentTree& tree, const ComponentFilter& filter, NodeIndex node, int depth,
          std::string& out) {
    out += std::string(static_cast<std::size_t>(2 * depth), ' ') + tree.Label(node);
    out += filter.Matches(node) ? " *\n" : "\n";
    int row = 0;
    for (const NodeIndex child : filter.Children(node)) {
        EXPECT_EQ(filter.Row(child), row++) << tree.Label(child);
        Dump(tree, filter, child, depth + 1, out);
    }
}

TEST(ComponentFilterTest, KeepsMatchesAndTheirAncestorsInTreeOrder) {
    MemoryComponentHost host({sample::MakeProject()});
    ComponentTree tree(&host);
    tree.RebuildFromHost();
    ComponentFilter filter;
    EXPECT_TRUE(filter.Keeps(5)) << "no filter keeps everything";

    filter.Apply(tree, "外墙属性");
    ASSERT_TRUE(filter.Active());
    std::string kept;
    Dump(tree, filter, tree.Root(), 0, kept);
    EXPECT_EQ(kept, "全部工程\n"
                    "  工程A\n"
                    "    建筑\n"
                    "      墙体\n"
                    "        外墙\n"
                    "          F1\n"
                    "            外墙属性1 *\n"
                    "            外墙属性2 *\n"
                    "          F2\n"
                    "            外墙属性1 *\n"
                    "          屋面\n"
                    "            外墙属性1 *\n");
    EXPECT_EQ(filter.MatchCount(), 4u);
    EXPECT_FALSE(filter.Keeps(sample::FindNode(tree, {"工程A", "结构"})));
    EXPECT_EQ(filter.Row(sample::FindNode(tree, {"工程A", "结构"})), -1);

    filter.Apply(tree, "qt-00"); // Latin letters match in either case
    EXPECT_EQ(filter.MatchCount(), 3u);
    filter.Apply(tree, "no such label");
    EXPECT_TRUE(filter.Active());
    EXPECT_FALSE(filter.Keeps(tree.Root()));
    filter.Apply(tree, "");
    EXPECT_FALSE(filter.Active());
}

} // namespace
} // namespace obsidra::components
