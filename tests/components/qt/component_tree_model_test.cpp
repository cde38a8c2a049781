#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "components/qt/component_tree_model.h"
#include "components/testing/memory_component_host.h"
#include "sample_building.h"

namespace obsidra::components::qt {
namespace {

using components::testing::MemoryComponentHost;

// The tester reports through Qt's warnings; each one fails the test that caused it.
class WarningsFail {
public:
    WarningsFail() { m_previous = qInstallMessageHandler(&Fail); }
    ~WarningsFail() { qInstallMessageHandler(m_previous); }

private:
    static void Fail(QtMsgType type, const QMessageLogContext&, const QString& message) {
        if (type != QtDebugMsg && type != QtInfoMsg) ADD_FAILURE() << message.toStdString();
    }
    QtMessageHandler m_previous;
};

class ComponentTreeModelTest : public ::testing::Test {
protected:
    ComponentTreeModelTest() : m_host({sample::MakeProject()}), m_model(&m_host) {}

    NodeIndex Node(const std::vector<std::string_view>& path) const {
        const NodeIndex node = sample::FindNode(m_model.Tree(), path);
        EXPECT_NE(node, kNoNode);
        return node;
    }

    WarningsFail m_warningsFail;
    MemoryComponentHost m_host;
    ComponentTreeModel m_model;
};

TEST_F(ComponentTreeModelTest, StaysConsistentThroughBuildsTogglesAndClears) {
    QAbstractItemModelTester tester(&m_model,
                                    QAbstractItemModelTester::FailureReportingMode::Warning);
    for (const Grouping grouping : {Grouping::ByDiscipline, Grouping::ByFloor}) {
        m_model.Tree().SetGrouping(grouping);
        m_model.Tree().RebuildFromHost();
        const NodeIndex walls = grouping == Grouping::ByDiscipline
                                    ? Node({"工程A", "建筑", "墙体"})
                                    : Node({"工程A", "F1", "建筑", "墙体"});
        m_model.Tree().ToggleByMouse(walls);
        m_model.Tree().ToggleByMouse(m_model.Tree().Root());
        m_model.Tree().Select(walls);
        m_model.Tree().ToggleSelectedByKey();
    }
    m_model.Tree().Clear();
    EXPECT_EQ(m_model.rowCount(), 0);
}

TEST_F(ComponentTreeModelTest, RowsShowTheNodesLabelBoxKindAndHighlight) {
    m_model.Tree().RebuildFromHost();
    const QModelIndex root = m_model.index(0, 0);
    EXPECT_EQ(root.data().toString(), QStringLiteral("全部工程"));
    EXPECT_EQ(root.data(ComponentTreeModel::kKindRole).toInt(), 1);
    EXPECT_EQ(root.data(Qt::CheckStateRole), QVariant(Qt::Checked));
    EXPECT_EQ(m_model.flags(root) & Qt::ItemIsUserCheckable, Qt::NoItemFlags);

    const NodeIndex beams = Node({"工程A", "结构", "梁柱", "梁"});
    const QModelIndex index = m_model.IndexOf(beams);
    EXPECT_EQ(m_model.NodeOf(index), beams);
    EXPECT_EQ(index.data().toString(), QStringLiteral("梁"));
    EXPECT_EQ(m_model.parent(index).data().toString(), QStringLiteral("梁柱"));

    m_model.Tree().SetCheckState(beams, CheckState::Unchecked, true);
    EXPECT_EQ(index.data(Qt::CheckStateRole), QVariant(Qt::Unchecked));
    EXPECT_EQ(m_model.parent(index).data(Qt::CheckStateRole), QVariant(Qt::Unchecked));
    EXPECT_EQ(root.data(Qt::CheckStateRole), QVariant(Qt::PartiallyChecked));

    m_model.Tree().SetHighlight(std::vector<std::uint64_t>{sample::kBeam});
    EXPECT_EQ(index.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::red));
    m_model.Tree().Select(beams);
    EXPECT_FALSE(index.data(Qt::ForegroundRole).isValid()) << "the selected row is not red";
}

// Every box that a click on the root changes is reported, in as few signals as the rows allow.
TEST_F(ComponentTreeModelTest, AClickReportsEveryChangedBox) {
    m_model.Tree().RebuildFromHost();
    QSignalSpy spy(&m_model, &QAbstractItemModel::dataChanged);
    m_model.Tree().ToggleByMouse(m_model.Tree().Root());

    std::set<NodeIndex> reported;
    for (const QList<QVariant>& signal : spy) {
        const auto first = signal[0].value<QModelIndex>();
        const auto last = signal[1].value<QModelIndex>();
        ASSERT_EQ(first.parent(), last.parent());
        EXPECT_EQ(signal[2].value<QList<int>>(), QList<int>{Qt::CheckStateRole});
        for (int row = first.row(); row <= last.row(); ++row)
            reported.insert(m_model.NodeOf(m_model.index(row, 0, first.parent())));
    }
    std::set<NodeIndex> boxes;
    for (NodeIndex node = 0; node < static_cast<NodeIndex>(m_model.Tree().NodeCount()); ++node)
        if (m_model.Tree().GetCheckState(node) != CheckState::NoBox) boxes.insert(node);
    EXPECT_EQ(reported, boxes);
    std::set<QModelIndex> parents;
    for (const QList<QVariant>& signal : spy)
        parents.insert(signal[0].value<QModelIndex>().parent());
    EXPECT_EQ(parents.size(), static_cast<std::size_t>(spy.size())) << "one signal per parent";
}

} // namespace
} // namespace obsidra::components::qt
