#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "components/component_tree.h"
#include "components/testing/memory_component_host.h"
#include "sample_building.h"

namespace obsidra::components {
namespace {

using testing::MemoryComponentHost;
using Path = std::vector<std::string_view>;

const Path kOuterWalls{"工程A", "建筑", "墙体", "外墙"};

Path Join(Path base, std::initializer_list<std::string_view> more) {
    base.insert(base.end(), more);
    return base;
}

class Recorder final : public ComponentTreeObserver {
public:
    void HighlightChanged(bool repaintNow) override { highlights.push_back(repaintNow); }
    void InformationChanged(std::string_view text) override { texts.emplace_back(text); }

    std::vector<bool> highlights;
    std::vector<std::string> texts;
};

class Selection : public ::testing::Test {
protected:
    Selection() : m_host({sample::MakeProject()}), m_tree(&m_host) { m_tree.RebuildFromHost(); }

    NodeIndex Node(const Path& path) const {
        const NodeIndex node = sample::FindNode(m_tree, path);
        EXPECT_NE(node, kNoNode);
        return node;
    }

    // The labels of highlighted nodes, in node order.
    std::vector<std::string> Highlighted() const {
        std::vector<std::string> labels;
        for (NodeIndex node = 0; node < static_cast<NodeIndex>(m_tree.NodeCount()); ++node)
            if (m_tree.IsHighlighted(node)) labels.push_back(m_tree.Label(node));
        return labels;
    }

    MemoryComponentHost m_host;
    ComponentTree m_tree;
};

using Labels = std::vector<std::string>;

TEST_F(Selection, HighlightMarksComponentsAndTheirAncestors) {
    const std::vector<std::uint64_t> handles{sample::kBeam, 424242};
    m_tree.SetHighlight(handles);
    EXPECT_EQ(Highlighted(),
              (Labels{"全部工程", "工程A", "结构", "梁柱", "梁", "F2", "梁属性", "L-1"}));

    const std::vector<std::uint64_t> replacement{sample::kRoof};
    m_tree.SetHighlight(replacement);
    EXPECT_EQ(Highlighted(),
              (Labels{"全部工程", "工程A", "建筑", "墙体", "外墙", "屋面", "外墙属性1", "QT-005"}));

    m_tree.SetHighlight({});
    EXPECT_TRUE(Highlighted().empty());

    // QT-001 and QT-004 share their handle; QT-001 comes first in the tree.
    m_tree.MarkComponent(sample::kWallA);
    EXPECT_EQ(Highlighted(),
              (Labels{"全部工程", "工程A", "建筑", "墙体", "外墙", "F1", "外墙属性1", "QT-001"}));
}

TEST_F(Selection, MarkingAddsToTheHighlightAndUnknownHandlesChangeNothing) {
    Recorder recorder;
    m_tree.AddObserver(&recorder);
    const std::vector<std::uint64_t> handles{sample::kBeam};
    m_tree.SetHighlight(handles);
    m_tree.MarkComponent(sample::kRoof);
    m_tree.MarkComponent(sample::kOrphan);
    m_tree.MarkComponent(0);

    EXPECT_TRUE(m_tree.IsHighlighted(Node({"工程A", "结构", "梁柱", "梁", "F2", "梁属性", "L-1"})));
    EXPECT_TRUE(m_tree.IsHighlighted(Node(Join(kOuterWalls, {"屋面", "外墙属性1", "QT-005"}))));
    EXPECT_EQ(Highlighted().size(), 8u + 6u);
    // Setting the highlight repaints at once; marking waits for the next paint.
    EXPECT_EQ(recorder.highlights, (std::vector<bool>{true, false}));
    m_tree.RemoveObserver(&recorder);
}

TEST_F(Selection, HighlightComesFromTheHostAfterEveryRebuild) {
    m_host.SetHighlighted({sample::kWallC});
    m_tree.RefreshHighlightFromHost();
    EXPECT_TRUE(m_tree.IsHighlighted(Node(Join(kOuterWalls, {"F2", "外墙属性1", ""}))));

    m_tree.MarkComponent(sample::kBeam);
    m_tree.SetGrouping(Grouping::ByFloor);
    m_tree.RebuildFromHost();
    EXPECT_EQ(Highlighted(),
              (Labels{"全部工程", "工程A", "F2", "建筑", "墙体", "外墙", "外墙属性1", ""}));
}

TEST_F(Selection, InformationTextOfEachNode) {
    const struct {
        const char* name;
        Grouping grouping;
        Path path;
        std::string expected;
    } rows[] = {
        {"root", Grouping::ByDiscipline, {}, ""},
        {"project counts every component",
         Grouping::ByDiscipline,
         {"工程A"},
         "工程名：工程A\r\n工程类型：住宅\r\n工程Order:1\r\n当前工程所有构件数：6\r\n"},
        {"discipline",
         Grouping::ByDiscipline,
         {"工程A", "结构"},
         "专业名：结构\r\n专业Order：未设置\r\n当前专业下构件数：1\r\n"},
        {"major category",
         Grouping::ByDiscipline,
         {"工程A", "建筑", "墙体"},
         "大类名：墙体\r\n大类Order:1\r\n当前大类下构件数：5\r\n"},
        {"minor category", Grouping::ByDiscipline, kOuterWalls,
         "小类名:外墙\r\n小类Order:1\r\n当前小类下构件数：5\r\n"},
        {"minor category without components",
         Grouping::ByDiscipline,
         {"工程A", "建筑", "墙体", "内墙"},
         "小类名:内墙\r\n小类Order:2\r\n当前小类下构件数：0\r\n"},
        {"floor under a minor category", Grouping::ByDiscipline, Join(kOuterWalls, {"F1"}),
         "楼层名:F1\r\n楼层Order:1\r\n楼层底标高:0.000000\r\n层高:3."
         "000000\r\n当前楼层下构件数：3\r\n"},
        {"floor missing from the floor map", Grouping::ByDiscipline, Join(kOuterWalls, {"屋面"}),
         ""},
        {"attribute runs into its count line", Grouping::ByDiscipline,
         Join(kOuterWalls, {"F1", "外墙属性1"}),
         "属性Guid:A1\r\n属性名:外墙属性1\r\n分区类型:\r\n"
         "主构件Guid:00000000-0000-0000-0000-000000000000\r\n主构件类型:当前属性下构件数：2\r\n"},
        {"component has no count line", Grouping::ByDiscipline,
         Join(kOuterWalls, {"F1", "外墙属性1", "QT-001"}),
         "构件Guid：QT-001\r\n主构件Guid：00000000-0000-0000-0000-000000000000\r\n"},
        {"geometry", Grouping::ByDiscipline,
         Join(kOuterWalls, {"F1", "外墙属性1", "QT-001", "几何1"}), "几何ID：12\r\n非全几何\r\n"},
        {"floor directly under a project shows nothing", Grouping::ByFloor, {"工程A", "F1"}, ""},
        {"discipline under a floor counts that floor only",
         Grouping::ByFloor,
         {"工程A", "F1", "建筑"},
         "专业名：建筑\r\n专业Order：1\r\n当前专业下构件数：3\r\n"},
    };
    for (const auto& row : rows) {
        m_tree.SetGrouping(row.grouping);
        m_tree.RebuildFromHost();
        m_tree.Select(Node(row.path));
        EXPECT_EQ(m_tree.Information(), row.expected) << row.name;
    }
}

TEST_F(Selection, FloorRecordIsKeptWhereNoTextIsShown) {
    m_tree.SetGrouping(Grouping::ByFloor);
    m_tree.RebuildFromHost();
    const NodeIndex floor = Node({"工程A", "F2"});
    EXPECT_EQ(m_tree.Kind(floor), NodeKind::None);
    ASSERT_NE(m_tree.FindRecord<FloorRecord>(floor), nullptr);
    EXPECT_EQ(m_tree.FindRecord<FloorRecord>(floor)->storeyHeight, 3.3);
    EXPECT_EQ(m_tree.ComponentCount(floor), 2);
}

TEST_F(Selection, ClearingOrRebuildingEmptiesTheInformation) {
    Recorder recorder;
    m_tree.AddObserver(&recorder);
    m_tree.Select(Node({"工程A"}));
    ASSERT_FALSE(m_tree.Information().empty());

    m_tree.Clear();
    EXPECT_EQ(m_tree.Selected(), kNoNode);
    EXPECT_EQ(m_tree.Information(), "");
    ASSERT_EQ(recorder.texts.size(), 2u);
    EXPECT_EQ(recorder.texts.back(), "");

    m_tree.RebuildFromHost();
    m_tree.Select(kNoNode);
    EXPECT_EQ(m_tree.Information(), "");
    m_tree.RemoveObserver(&recorder);
}

// The selected node's geometry is marked in the host (11-13 lie under F1's 外墙属性1); the next
// selection and a clear take the marks back, and the host is not asked to redraw.
TEST_F(Selection, TheSelectedNodesGeometryIsMarkedInTheHost) {
    const auto marked = [this] {
        std::vector<std::int64_t> ids;
        for (std::int64_t id = 11; id <= 16; ++id)
            if (m_host.IsHighlighted(id).value_or(false)) ids.push_back(id);
        return ids;
    };
    m_tree.Select(Node({"工程A", "建筑", "墙体", "外墙", "F1", "外墙属性1"}));
    EXPECT_EQ(marked(), (std::vector<std::int64_t>{11, 12, 13}));
    m_tree.Select(Node({"工程A", "建筑", "墙体", "外墙", "F2"}));
    EXPECT_EQ(marked(), std::vector<std::int64_t>{14});
    m_tree.Clear();
    EXPECT_EQ(marked(), std::vector<std::int64_t>{});
    EXPECT_EQ(m_host.RedrawCount(), 0);
}

} // namespace
} // namespace obsidra::components
