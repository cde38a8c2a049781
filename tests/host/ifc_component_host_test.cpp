#include <numeric>

#include "components/component_tree.h"
#include "components/minor_category_statistics.h"
#include "host/ifc/ifc_component_host.h"
#include "ifc_test.h"

namespace obsidra::host::ifc::testing {
namespace {

using components::ComponentRecord;
using components::ComponentTree;
using components::NodeIndex;
using components::NodeKind;

class IfcComponentHostTest : public IfcTest {
protected:
    void SetUp() override {
        IfcTest::SetUp();
        m_host = std::make_unique<IfcComponentHost>(ImportHouse());
        m_host->SetRedraw([this] { ++m_redraws; });
        m_tree = std::make_unique<ComponentTree>(m_host.get());
        m_tree->RebuildFromHost();
    }

    const IfcComponent& Component(std::string_view globalId) const {
        for (const IfcComponent& c : m_host->Building().Components())
            if (c.globalId == globalId) return c;
        ADD_FAILURE() << globalId;
        return m_host->Building().Components().front();
    }

    NodeIndex NodeOf(const IfcComponent& component) const {
        for (NodeIndex node = 0; static_cast<std::size_t>(node) < m_tree->NodeCount(); ++node)
            if (m_tree->Kind(node) == NodeKind::Component &&
                m_tree->FindRecord<ComponentRecord>(node)->handle == component.handle)
                return node;
        ADD_FAILURE() << component.globalId << " has no node";
        return 0;
    }

    std::unique_ptr<IfcComponentHost> m_host;
    std::unique_ptr<ComponentTree> m_tree;
    int m_redraws = 0;
};

TEST_F(IfcComponentHostTest, TheViewersBoxesHideAndShowTheComponentsShells) {
    const IfcComponent& wall = Component("3g46_woBL6sugXeY5_WP6n");
    const IfcComponent& door = Component("0Tif_$wI1FwAwq$OJt24I8");
    ASSERT_EQ(wall.shells.size(), 1u);
    EXPECT_EQ(Visibility(wall.shells[0]), "");

    m_tree->ToggleByMouse(NodeOf(wall));
    EXPECT_EQ(Visibility(wall.shells[0]), "everything=off");
    EXPECT_EQ(Visibility(door.shells[0]), "");
    EXPECT_EQ(m_redraws, 1);
    m_tree->ToggleByMouse(NodeOf(wall));
    EXPECT_EQ(Visibility(wall.shells[0]), "everything=on");
    EXPECT_EQ(m_redraws, 2);

    m_tree->ToggleByMouse(m_tree->Root());
    for (const IfcComponent& c : m_host->Building().Components())
        for (HC_KEY shell : c.shells)
            EXPECT_EQ(Visibility(shell), "everything=off") << c.globalId;
    EXPECT_EQ(m_redraws, 3);
}

TEST_F(IfcComponentHostTest, GeometryThatIsGoneIsNotFound) {
    ComponentHost::GeometryIndex* index = m_host->GetGeometryIndex();
    const IfcComponent& wall = Component("3g46_woBL6sugXeY5_WP6n");
    EXPECT_EQ(index->FindGeometry(wall.segment), nullptr); // a segment is no geometry
    EXPECT_EQ(index->FindGeometry(0), nullptr);
    const std::shared_ptr<ComponentHost::GeometryHandle> held = index->FindGeometry(wall.shells[0]);
    ASSERT_TRUE(held);
    HC_Delete_By_Key(wall.shells[0]);
    EXPECT_EQ(index->FindGeometry(wall.shells[0]), nullptr);
    // A handle the viewer still holds does nothing, and says nothing, for a deleted shell.
    held->GetGeometry()->SetVisible(false);
    m_tree->ToggleByMouse(NodeOf(wall));
    EXPECT_TRUE(Errors().empty());
}

TEST_F(IfcComponentHostTest, TheHostsSelectionIsTheViewersHighlight) {
    const IfcComponent& wall = Component("3g46_woBL6sugXeY5_WP6n");
    const IfcComponent& door = Component("0Tif_$wI1FwAwq$OJt24I8");
    m_host->SetSelection({wall.handle, 42, wall.handle});
    EXPECT_EQ(m_host->Selection(), std::vector<std::uint64_t>{wall.handle});
    EXPECT_TRUE(m_host->SelectByKey(door.shells[0])); // as a pick in the view gives it
    EXPECT_FALSE(m_host->SelectByKey(m_host->Building().Floors()[0].segment));
    EXPECT_EQ(m_host->Selection(), (std::vector<std::uint64_t>{wall.handle, door.handle}));
    m_tree->RefreshHighlightFromHost();
    EXPECT_TRUE(m_tree->IsHighlighted(NodeOf(wall)));
    EXPECT_TRUE(m_tree->IsHighlighted(NodeOf(door)));
    EXPECT_FALSE(m_tree->IsHighlighted(NodeOf(Component("3xUPAVO39FGgNkCUQqf4JV"))));
    m_host->ClearSelection();
    m_tree->RefreshHighlightFromHost();
    EXPECT_FALSE(m_tree->IsHighlighted(NodeOf(wall)));
}

TEST_F(IfcComponentHostTest, StatisticsCountEveryComponentByMinorCategory) {
    MinorCategoryCounts counts;
    m_host->GetModel()->CollectMinorCategoryCounts(counts);
    EXPECT_EQ(counts.at("竖梃"), 20);
    EXPECT_EQ(counts.at("窗"), 5);
    EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), 0,
                              [](int sum, const auto& entry) { return sum + entry.second; }),
              41);
    EXPECT_EQ(components::CollectMinorCategoryStatistics(m_host.get()).totalLine,
              "总构件个数->> 41");
}

} // namespace
} // namespace obsidra::host::ifc::testing
