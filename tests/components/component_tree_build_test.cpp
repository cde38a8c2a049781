#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "components/component_tree.h"
#include "components/testing/memory_component_host.h"
#include "components/testing/synthetic_building.h"
#include "sample_building.h"

namespace obsidra::components {
namespace {

using testing::MemoryComponentHost;

ComponentTree BuildSample(MemoryComponentHost& host, Grouping grouping) {
    ComponentTree tree(&host);
    tree.SetGrouping(grouping);
    tree.RebuildFromHost();
    return tree;
}

TEST(ComponentTreeBuild, ByDisciplinePutsFloorsUnderMinorCategories) {
    MemoryComponentHost host({sample::MakeProject()});
    const ComponentTree tree = BuildSample(host, Grouping::ByDiscipline);

    // Two groups on F1 share one floor node; 屋面 is made although the floor map lacks it;
    // 地下室 is made although its group's attribute is missing; 内墙 has no index entry.
    EXPECT_EQ(sample::DumpTree(tree), R"(全部工程 [1]
  工程A [2]
    建筑 [3]
      墙体 [5]
        外墙 [6]
          F1 [8]
            外墙属性1 [9]
              QT-001 [10]
                几何0 [11]
                几何1 [11]
              0000abcd-0001-f00d-0123-456789abcdef [10]
                几何0 [11]
            外墙属性2 [9]
              QT-004 [10]
                几何0 [11]
          F2 [8]
            外墙属性1 [9]
               [10]
                几何0 [11]
          屋面 [8]
            外墙属性1 [9]
              QT-005 [10]
                几何0 [11]
          地下室 [8]
        内墙 [6]
    结构 [3]
      梁柱 [5]
        梁 [6]
          F2 [8]
            梁属性 [9]
              L-1 [10]
)");
}

TEST(ComponentTreeBuild, ByFloorRepeatsDisciplinesUnderEachFloor) {
    MemoryComponentHost host({sample::MakeProject()});
    const ComponentTree tree = BuildSample(host, Grouping::ByFloor);

    // Floors come from the floor map in name order and carry no item data; groups on other
    // floors, and on floors the map lacks, are left out.
    EXPECT_EQ(sample::DumpTree(tree), R"(全部工程 [1]
  工程A [2]
    F1 [0]
      建筑 [3]
        墙体 [5]
          外墙 [6]
            外墙属性1 [9]
              QT-001 [10]
                几何0 [11]
                几何1 [11]
              0000abcd-0001-f00d-0123-456789abcdef [10]
                几何0 [11]
            外墙属性2 [9]
              QT-004 [10]
                几何0 [11]
          内墙 [6]
      结构 [3]
        梁柱 [5]
          梁 [6]
    F2 [0]
      建筑 [3]
        墙体 [5]
          外墙 [6]
            外墙属性1 [9]
               [10]
                几何0 [11]
          内墙 [6]
      结构 [3]
        梁柱 [5]
          梁 [6]
            梁属性 [9]
              L-1 [10]
)");
}

TEST(ComponentTreeBuild, MissingInputGivesOnlyTheRoot) {
    MemoryComponentHost noProjects;
    MemoryComponentHost emptyProjectObject;
    emptyProjectObject.AddEmptyProjectObject();
    const struct {
        const char* name;
        ComponentHost* host;
    } rows[] = {
        {"no host", nullptr},
        {"host without projects", &noProjects},
        {"project object without data", &emptyProjectObject},
    };
    for (const auto& row : rows) {
        ComponentTree tree(row.host);
        tree.RebuildFromHost();
        EXPECT_EQ(sample::DumpTree(tree, true), "全部工程 [1] <3>\n") << row.name;
        EXPECT_EQ(tree.InformationText(tree.Root()), "") << row.name;
    }

    ComponentTree tree;
    std::vector<ComponentHost::Project*> nullProjects{nullptr, nullptr};
    tree.Build(nullProjects);
    EXPECT_EQ(sample::DumpTree(tree), "全部工程 [1]\n");
}

TEST(ComponentTreeBuild, RebuildReplacesTheTreeAndGroupingWaitsForIt) {
    MemoryComponentHost host({sample::MakeProject()});
    ComponentTree tree = BuildSample(host, Grouping::ByDiscipline);
    const std::string byDiscipline = sample::DumpTree(tree);

    tree.SetGrouping(Grouping::ByFloor);
    EXPECT_EQ(sample::DumpTree(tree), byDiscipline);

    tree.RebuildFromHost();
    tree.SetGrouping(Grouping::ByDiscipline);
    tree.RebuildFromHost();
    EXPECT_EQ(sample::DumpTree(tree), byDiscipline);

    tree.Clear();
    EXPECT_EQ(tree.NodeCount(), 0u);
    EXPECT_EQ(tree.Root(), kNoNode);
}

// Every box starts ticked.
TEST(ComponentTreeBuild, NodeTableIsConsistent) {
    MemoryComponentHost host({sample::MakeProject()});
    for (const Grouping grouping : {Grouping::ByFloor, Grouping::ByDiscipline}) {
        const ComponentTree tree = BuildSample(host, grouping);
        for (NodeIndex node = 0; node < static_cast<NodeIndex>(tree.NodeCount()); ++node) {
            EXPECT_EQ(tree.GetCheckState(node), CheckState::Checked) << tree.Label(node);
            const auto children = tree.Children(node);
            for (std::size_t row = 0; row < children.size(); ++row) {
                EXPECT_EQ(tree.Parent(children[row]), node);
                EXPECT_EQ(tree.Row(children[row]), static_cast<int>(row));
            }
        }
    }
    const ComponentTree tree = BuildSample(host, Grouping::ByDiscipline);
    EXPECT_EQ(tree.Parent(tree.Root()), kNoNode);
    // Reads past the table are harmless.
    EXPECT_TRUE(tree.Children(9999).empty());
    EXPECT_EQ(tree.Label(-5), "");
    EXPECT_EQ(tree.FindRecord<ComponentRecord>(9999), nullptr);
}

TEST(ComponentTreeBuild, GeneratedBuildingHasEveryNode) {
    const testing::BuildingShape shape{2, 3, 2, 2, 3, 4, 3};
    MemoryComponentHost host(testing::MakeSyntheticBuilding(shape));
    const std::size_t minors = 2 * 2 * 2 * 3;
    const std::size_t components = shape.ComponentCount();
    const std::size_t geometries = shape.GeometryCount();
    ASSERT_EQ(components, minors * 3 * 4);

    const struct {
        Grouping grouping;
        std::size_t expected;
    } rows[] = {
        // root, projects, disciplines, majors, minors, one floor and one attribute per group.
        {Grouping::ByDiscipline,
         1 + 2 + 2 * 2 + 2 * 2 * 2 + minors + minors * 3 * 2 + components + geometries},
        // ... and by floor the category levels stand once per floor.
        {Grouping::ByFloor,
         1 + 2 + 2 * 3 + 3 * (2 * 2 + 2 * 2 * 2 + minors) + minors * 3 + components + geometries},
    };
    for (const auto& row : rows) {
        const ComponentTree tree = BuildSample(host, row.grouping);
        EXPECT_EQ(tree.NodeCount(), row.expected) << static_cast<int>(row.grouping);
        EXPECT_EQ(tree.ComponentCount(tree.Root()), static_cast<int>(components));
    }
}

} // namespace
} // namespace obsidra::components
