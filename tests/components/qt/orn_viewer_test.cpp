#include <QComboBox>
#include <QContextMenuEvent>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <array>
#include <gtest/gtest.h>
#include <string_view>
#include <vector>

#include "components/qt/muti_tree_ctrl.h"
#include "components/qt/orn_viewer.h"
#include "components/testing/memory_component_host.h"
#include "dialog_test.h"
#include "sample_building.h"

namespace obsidra::components::qt {
namespace {

using components::testing::MemoryComponentHost;
using qt::testing::FindControl;
using Call = MemoryComponentHost::VisibilityCall;
using Path = std::vector<std::string_view>;

const Path kOuterWallsF1{"工程A", "建筑", "墙体", "外墙", "F1", "外墙属性1"};
const Path kWallA{"工程A", "建筑", "墙体", "外墙", "F1", "外墙属性1", "QT-001"};
const Path kInnerWalls{"工程A", "建筑", "墙体", "内墙"};

class OrnViewerTest : public ::testing::Test {
protected:
    OrnViewerTest() : m_host({sample::MakeProject()}), m_viewer(new OrnViewer(&m_host)) {
        m_viewer->show();
        m_viewer->RefreshControlTree();
        m_host.ClearRecordedCalls();
    }
    ~OrnViewerTest() override { delete m_viewer; }

    CMutiTreeCtrl* Tree() const { return m_viewer->Tree(); }
    ComponentTree& Model() const { return Tree()->Tree(); }

    // The node's index with every ancestor expanded, so that its row is on screen.
    QModelIndex Show(const Path& path) const {
        const NodeIndex node = sample::FindNode(Model(), path);
        EXPECT_NE(node, kNoNode);
        const QModelIndex index = Tree()->Model()->IndexOf(node);
        for (QModelIndex up = index.parent(); up.isValid(); up = up.parent())
            Tree()->expand(up);
        Tree()->scrollTo(index);
        return index;
    }

    void ClickBox(const Path& path) const {
        const NodeIndex node = Tree()->Model()->NodeOf(Show(path));
        const QRect box = Tree()->CheckBoxRect(node);
        ASSERT_FALSE(box.isEmpty());
        QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {}, box.center());
    }

    void Click(int controlId) const {
        QTest::mouseClick(FindControl<QPushButton>(m_viewer, controlId), Qt::LeftButton);
    }

    // Whether the row's text has red pixels on screen.
    bool DrawnRed(const Path& path) const {
        const QRect row = Tree()->visualRect(Show(path));
        const QImage image = Tree()->viewport()->grab(row).toImage();
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const QColor c = image.pixelColor(x, y);
                if (c.red() > 160 && c.green() < 90 && c.blue() < 90) return true;
            }
        return false;
    }

    MemoryComponentHost m_host;
    OrnViewer* m_viewer;
};

TEST_F(OrnViewerTest, ControlsKeepTheirTemplateIdsAndTexts) {
    EXPECT_EQ(m_viewer->windowTitle(), QStringLiteral("Dialog"));
    EXPECT_EQ(FindControl<QPushButton>(m_viewer, 1014)->text(), QStringLiteral("刷新高亮"));
    EXPECT_EQ(FindControl<QPushButton>(m_viewer, 1003)->text(), QStringLiteral("刷新控制树"));
    EXPECT_EQ(FindControl<QLabel>(m_viewer, -1)->text(), QStringLiteral("控制树类型："));
    EXPECT_EQ(FindControl<CMutiTreeCtrl>(m_viewer, 1013), Tree());
    EXPECT_NE(FindControl<QPlainTextEdit>(m_viewer, 1012), nullptr);
    const QComboBox* type = FindControl<QComboBox>(m_viewer, 1004);
    ASSERT_EQ(type->count(), 2);
    EXPECT_EQ(type->itemText(0), QStringLiteral("按楼层"));
    EXPECT_EQ(type->itemText(1), QStringLiteral("按专业"));
    EXPECT_EQ(type->currentText(), QStringLiteral("按专业"));
}

TEST_F(OrnViewerTest, TheGroupingChangesAtTheNextRefresh) {
    const auto firstUnderProject = [this] {
        return Model().Label(Model().Children(Model().Children(Model().Root())[0])[0]);
    };
    EXPECT_EQ(firstUnderProject(), "建筑");
    FindControl<QComboBox>(m_viewer, 1004)->setCurrentIndex(0);
    EXPECT_EQ(firstUnderProject(), "建筑") << "the combo alone changes nothing";
    Click(OrnViewer::kRefreshTreeId);
    EXPECT_EQ(firstUnderProject(), "F1");
    EXPECT_EQ(Model().GetGrouping(), Grouping::ByFloor);
}

TEST_F(OrnViewerTest, AClickOnABoxHidesItsGeometryAndRedrawsOnce) {
    ClickBox(kOuterWallsF1);
    EXPECT_EQ(m_host.VisibilityCalls(), (std::vector<Call>{{11, false}, {12, false}, {13, false}}));
    EXPECT_EQ(m_host.RedrawCount(), 1);
    EXPECT_EQ(Model().GetCheckState(sample::FindNode(Model(), {"工程A"})),
              CheckState::PartlyChecked);
}

TEST_F(OrnViewerTest, SpaceTicksTheSelectedBoxWithoutTheHost) {
    Tree()->setCurrentIndex(Show(kOuterWallsF1));
    QTest::keyClick(Tree(), Qt::Key_Space);
    const NodeIndex wall = sample::FindNode(Model(), kWallA);
    EXPECT_EQ(Model().GetCheckState(wall), CheckState::Unchecked);
    EXPECT_TRUE(m_host.VisibilityCalls().empty());
    EXPECT_EQ(m_host.RedrawCount(), 0);
}

TEST_F(OrnViewerTest, TheSelectedNodesInformationIsBesideTheTree) {
    Tree()->setCurrentIndex(Show(kOuterWallsF1));
    const QString expected =
        QString::fromStdString(Model().Information()).replace(QLatin1String("\r\n"), "\n");
    EXPECT_FALSE(expected.isEmpty());
    EXPECT_EQ(FindControl<QPlainTextEdit>(m_viewer, 1012)->toPlainText(), expected);
    Tree()->setCurrentIndex(Tree()->Model()->IndexOf(Model().Root()));
    EXPECT_TRUE(FindControl<QPlainTextEdit>(m_viewer, 1012)->toPlainText().isEmpty());
}

TEST_F(OrnViewerTest, TheHostsComponentsAndTheirAncestorsAreDrawnRed) {
    m_host.SetHighlighted({sample::kWallA});
    EXPECT_FALSE(DrawnRed(kWallA));
    Click(OrnViewer::kRefreshHighlightId);
    EXPECT_TRUE(DrawnRed(kWallA));
    EXPECT_TRUE(DrawnRed(kOuterWallsF1));
    EXPECT_FALSE(DrawnRed(kInnerWalls));

    const Path beam{"工程A", "结构", "梁柱", "梁", "F2", "梁属性", "L-1"};
    m_viewer->Select(sample::kBeam);
    m_viewer->Select(999999); // no such component
    EXPECT_TRUE(DrawnRed(beam));
    EXPECT_TRUE(DrawnRed(kWallA)) << "marking adds to the highlight";
}

TEST_F(OrnViewerTest, TheTreeKeepsItsWidthAndTheDialogItsInitialSize) {
    const QSize initial = m_viewer->size();
    const QRect tree = Tree()->geometry();
    const QRect box = FindControl<QPlainTextEdit>(m_viewer, 1012)->geometry();
    m_viewer->resize(initial + QSize(120, 60));
    EXPECT_EQ(Tree()->geometry(), tree.adjusted(0, 0, 0, 60));
    EXPECT_EQ(FindControl<QPlainTextEdit>(m_viewer, 1012)->geometry(), box.adjusted(0, 0, 120, 60));
    m_viewer->resize(initial - QSize(50, 50));
    EXPECT_EQ(m_viewer->size(), initial);
}

TEST_F(OrnViewerTest, ClosingDeletesTheDialogAndSaysSo) {
    QPointer<OrnViewer> viewer = m_viewer;
    QSignalSpy closed(viewer.data(), &OrnViewer::Closed);
    viewer->close();
    EXPECT_EQ(closed.size(), 1);
    EXPECT_EQ(Model().NodeCount(), 0u);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(viewer.isNull());
    m_viewer = nullptr;
}

// A host without projects, and no host at all, give the root alone; clicks change only boxes.
TEST(OrnViewerWithoutProjects, ShowsOnlyTheRoot) {
    MemoryComponentHost empty;
    for (ComponentHost* host : std::array<ComponentHost*, 2>{&empty, nullptr}) {
        OrnViewer viewer(host);
        viewer.show();
        viewer.RefreshControlTree();
        viewer.RefreshHighlight();
        viewer.Select(1);
        CMutiTreeCtrl* tree = viewer.Tree();
        ASSERT_EQ(tree->Tree().NodeCount(), 1u);
        EXPECT_EQ(tree->model()->index(0, 0).data().toString(), QStringLiteral("全部工程"));
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                          tree->CheckBoxRect(tree->Tree().Root()).center());
        EXPECT_EQ(tree->Tree().GetCheckState(tree->Tree().Root()), CheckState::Unchecked);
    }
    EXPECT_EQ(empty.RedrawCount(), 1);
}

// Typing narrows the tree to the hits and their ancestors, all open; clearing brings back the
// rows that were open, with the node picked meanwhile still selected.
TEST_F(OrnViewerTest, TheFilterBoxNarrowsTheTreeAndClearingRestoresIt) {
    QLineEdit* filter = FindControl<QLineEdit>(m_viewer, OrnViewer::kFilterId);
    ASSERT_NE(filter, nullptr);
    Show(kInnerWalls);
    const QModelIndex structure =
        Tree()->Model()->IndexOf(sample::FindNode(Model(), {"工程A", "结构"}));
    ASSERT_FALSE(Tree()->isExpanded(structure));

    QTest::keyClicks(filter, QStringLiteral("qt-001"));
    const QModelIndex hit = Tree()->Model()->IndexOf(sample::FindNode(Model(), kWallA));
    ASSERT_TRUE(hit.isValid());
    EXPECT_FALSE(Tree()->visualRect(hit).isEmpty()) << "every ancestor of a hit is open";
    EXPECT_FALSE(Tree()->Model()->IndexOf(sample::FindNode(Model(), kInnerWalls)).isValid());
    Tree()->setCurrentIndex(hit);

    filter->clear();
    const QModelIndex innerWalls = Tree()->Model()->IndexOf(sample::FindNode(Model(), kInnerWalls));
    EXPECT_TRUE(Tree()->isExpanded(innerWalls.parent())) << "what was open is open again";
    EXPECT_FALSE(
        Tree()->isExpanded(Tree()->Model()->IndexOf(sample::FindNode(Model(), {"工程A", "结构"}))));
    EXPECT_EQ(Tree()->Model()->NodeOf(Tree()->currentIndex()), sample::FindNode(Model(), kWallA));
    EXPECT_EQ(Model().Selected(), sample::FindNode(Model(), kWallA));
}

// The right button offers the three commands on the node under it; choosing one acts at once.
TEST_F(OrnViewerTest, TheContextMenuIsolatesXRaysAndShowsAll) {
    const auto choose = [this](const Path& path, int commandId) {
        std::vector<int> offered;
        Tree()->SetMenuRunner([&](QMenu& menu, const QPoint&) -> QAction* {
            QAction* chosen = nullptr;
            for (QAction* action : menu.actions()) {
                offered.push_back(action->property("commandId").toInt());
                if (offered.back() == commandId) chosen = action;
            }
            return chosen;
        });
        const QPoint at = Tree()->visualRect(Show(path)).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, Tree()->viewport()->mapToGlobal(at));
        QApplication::sendEvent(Tree()->viewport(), &event);
        EXPECT_EQ(offered, (std::vector<int>{2102, 2103, 2104}));
    };
    choose(kOuterWallsF1, CMutiTreeCtrl::kIsolateCommand);
    EXPECT_EQ(m_host.IsVisible(11), true);
    EXPECT_EQ(m_host.IsVisible(16), false);
    choose(kOuterWallsF1, CMutiTreeCtrl::kXRayCommand);
    EXPECT_EQ(m_host.IsXRay(11), false);
    EXPECT_EQ(m_host.IsXRay(16), true);
    choose(kWallA, CMutiTreeCtrl::kShowAllCommand);
    EXPECT_EQ(m_host.IsVisible(16), true);
    EXPECT_EQ(m_host.IsXRay(16), false);
    EXPECT_EQ(m_host.RedrawCount(), 3);
}

} // namespace
} // namespace obsidra::components::qt
