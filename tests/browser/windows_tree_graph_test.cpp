// The tree graph's widget view on its own: items mirrored one to one, and the widget's events
// reaching the client with their meanings.
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QTest>
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "treegraph/qt/seg_tree_ctrl.h"
#include "treegraph/qt/windows_tree_graph.h"
#include "treegraph/qt/windows_tree_graph_item.h"

namespace {

// A client that makes two children whenever an item is expanded and records every event.
class RecordingTarget : public TreeGraphMessageTarget {
public:
    void OnSelectItem(TreeGraphItem* item) override { Record("select", item); }
    void OnEndLabelEdit(TreeGraphItem* item, const char* text) override {
        Record(std::string("end ") + (text ? text : "(cancelled)"), item);
    }
    void OnBeginLabelEdit(TreeGraphItem* item, const char* text) override {
        Record(std::string("begin ") + text, item);
    }
    void OnExpandItem(TreeGraphItem* item, bool expanding) override {
        Record(expanding ? "expand" : "collapse", item);
        if (expanding && makeChildren) {
            item->AddChild("first", 0, true);
            item->AddChild("second", 0, true);
        }
    }
    void OnStateIconClick(TreeGraphItem* item) override { Record("icon", item); }

    std::vector<std::string> events;
    bool makeChildren = true;

private:
    void Record(const std::string& event, TreeGraphItem* item) {
        events.push_back(event + " " + (item->GetLabel() ? item->GetLabel() : ""));
    }
};

class WindowsTreeGraphTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_tree = std::make_unique<CSegTreeCtrl>();
        m_tree->resize(300, 400);
        QPixmap red(16, 16);
        red.fill(Qt::red);
        m_tree->SetStateImageList({QIcon(), QIcon(red)});
        m_graph = std::make_unique<WindowsTreeGraph>(m_tree.get(), &m_messages);
        m_graph->SetMessageTarget(&m_target);
        m_tree->show();
    }
    void TearDown() override {
        m_graph.reset();
        m_tree.reset();
    }

    TreeGraphItem* Root() { return m_graph->GetRoot(); }
    static QTreeWidgetItem* Handle(TreeGraphItem* item) {
        return static_cast<WindowsTreeGraphItem*>(item)->GetHandle();
    }
    static std::vector<std::string> Texts(const QTreeWidgetItem* parent) {
        std::vector<std::string> texts;
        for (int i = 0; i < parent->childCount(); ++i)
            texts.push_back(parent->child(i)->text(0).toStdString());
        return texts;
    }
    static std::vector<std::string> Labels(const TreeGraphItem* parent) {
        std::vector<std::string> labels;
        for (TreeGraphItem* child = parent->GetFirstChild(); child; child = child->GetNextSibling())
            labels.emplace_back(child->GetLabel());
        return labels;
    }
    QPoint Center(TreeGraphItem* item) { return m_tree->visualItemRect(Handle(item)).center(); }

    QListWidget m_messages;
    std::unique_ptr<CSegTreeCtrl> m_tree;
    std::unique_ptr<WindowsTreeGraph> m_graph;
    RecordingTarget m_target;
};

TEST_F(WindowsTreeGraphTest, EveryItemMirrorsOneWidgetItemInItsPlace) {
    TreeGraphItem* b = Root()->AddChild("b", 7, true);
    Root()->AddChild("a", 0, false);
    b->AddSibling("c", 0, false);
    EXPECT_EQ(Labels(Root()), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(Texts(m_tree->invisibleRootItem()), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(WindowsTreeGraphItem::FromHandle(Handle(b)), b);

    b->SetLabel("bee");
    b->SetBold(true);
    b->SetStateImage(0x11);
    EXPECT_EQ(Handle(b)->text(0), "bee");
    EXPECT_TRUE(Handle(b)->font(0).bold());
    EXPECT_FALSE(Handle(b)->icon(0).isNull()) << "only the low four bits choose the image";

    Root()->DeleteChild(b);
    EXPECT_EQ(Texts(m_tree->invisibleRootItem()), (std::vector<std::string>{"a", "c"}));
}

TEST_F(WindowsTreeGraphTest, HighlightingLeavesTheSelectionWhereItIs) {
    TreeGraphItem* a = Root()->AddChild("a", 1, true);
    TreeGraphItem* b = Root()->AddChild("b", 2, true);
    m_tree->setCurrentItem(Handle(a));
    b->SetHighlighted(true);
    EXPECT_EQ(m_tree->currentItem(), Handle(a));
    EXPECT_TRUE(Handle(b)->data(0, Qt::BackgroundRole).isValid());
    b->SetHighlighted(false);
    EXPECT_FALSE(Handle(b)->data(0, Qt::BackgroundRole).isValid());
}

TEST_F(WindowsTreeGraphTest, ChildrenAreMadeOncePerExpansionTheUserAsksFor) {
    const struct {
        const char* how;
        std::function<void(CSegTreeCtrl&, QTreeWidgetItem*)> expand;
    } kWays[] = {
        {"expander",
         [](CSegTreeCtrl& tree, QTreeWidgetItem* item) {
             const QRect row = tree.visualItemRect(item);
             QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                               QPoint(row.left() - tree.indentation() / 2, row.center().y()));
         }},
        {"double-click",
         [](CSegTreeCtrl& tree, QTreeWidgetItem* item) {
             // What a mouse sends: a click, then the second press as a double-click.
             const QPoint pos = tree.visualItemRect(item).center();
             QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, pos);
             QMouseEvent second(QEvent::MouseButtonDblClick, pos, tree.viewport()->mapToGlobal(pos),
                                Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
             QApplication::sendEvent(tree.viewport(), &second);
             QTest::mouseRelease(tree.viewport(), Qt::LeftButton, {}, pos);
         }},
        {"right arrow",
         [](CSegTreeCtrl& tree, QTreeWidgetItem* item) {
             tree.setCurrentItem(item);
             QTest::keyClick(&tree, Qt::Key_Right);
         }},
    };
    for (const auto& way : kWays) {
        m_target.events.clear();
        TreeGraphItem* node = Root()->AddChild(way.how, 1, false);
        node->SetHasChildren(true);
        EXPECT_EQ(Handle(node)->childIndicatorPolicy(), QTreeWidgetItem::ShowIndicator)
            << "the expander shows before any child exists";
        way.expand(*m_tree, Handle(node));
        EXPECT_EQ(std::count(m_target.events.begin(), m_target.events.end(),
                             std::string("expand ") + way.how),
                  1)
            << way.how;
        EXPECT_EQ(Texts(Handle(node)), (std::vector<std::string>{"first", "second"})) << way.how;
    }

    TreeGraphItem* node = Root()->GetFirstChild();
    m_target.events.clear();
    node->Collapse();
    node->Expand();
    EXPECT_TRUE(node->IsExpanded());
    EXPECT_TRUE(m_target.events.empty()) << "the model's own Expand and Collapse are not echoed";
    m_tree->collapseItem(Handle(node));
    EXPECT_EQ(m_target.events.back(), std::string("collapse ") + node->GetLabel());
}

TEST_F(WindowsTreeGraphTest, AnExpansionThatFindsNothingDropsTheExpander) {
    m_target.makeChildren = false;
    TreeGraphItem* node = Root()->AddChild("node", 1, true);
    node->SetHasChildren(true);
    m_tree->expandItem(Handle(node));
    EXPECT_EQ(Handle(node)->childIndicatorPolicy(),
              QTreeWidgetItem::DontShowIndicatorWhenChildless);
}

TEST_F(WindowsTreeGraphTest, NoMoreChildrenKeepsTheSecondOne) {
    const struct {
        int count;
        std::vector<std::string> left;
    } kCases[] = {{1, {}}, {2, {"1"}}, {4, {"1"}}};
    for (const auto& row : kCases) {
        TreeGraphItem* node = Root()->AddChild("node", 0, true);
        for (int i = 0; i < row.count; ++i)
            node->AddChild(std::to_string(i).c_str(), 0, true);
        node->SetHasChildren(false);
        EXPECT_EQ(Labels(node), row.left) << row.count << " children";
        EXPECT_EQ(Texts(Handle(node)), row.left) << row.count << " children";
    }
}

TEST_F(WindowsTreeGraphTest, LabelEditingFollowsTheBeginAndEndRules) {
    TreeGraphItem* keyless = Root()->AddChild("keyless", 0, true);
    TreeGraphItem* tagged = Root()->AddChild("tagged", 0, true);
    tagged->SetTag("tag");
    TreeGraphItem* fixed = Root()->AddChild("fixed", 5, true);
    fixed->SetEditable(false);
    TreeGraphItem* keyed = Root()->AddChild("keyed", 6, true);

    EXPECT_FALSE(keyless->EditLabel());
    EXPECT_TRUE(m_target.events.empty()) << "a keyless, untagged item is refused unheard";
    EXPECT_FALSE(fixed->EditLabel());
    EXPECT_EQ(m_target.events, (std::vector<std::string>{"begin fixed fixed"}));

    ASSERT_TRUE(tagged->EditLabel());
    QTest::keyClick(m_tree->GetLabelEditor(), Qt::Key_Escape);
    EXPECT_EQ(m_target.events.back(), "end (cancelled) tagged");

    ASSERT_TRUE(keyed->EditLabel());
    auto* editor = qobject_cast<QLineEdit*>(m_tree->GetLabelEditor());
    ASSERT_NE(editor, nullptr);
    editor->setText("renamed");
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_NE(std::find(m_target.events.begin(), m_target.events.end(), "end renamed keyed"),
              m_target.events.end());
    EXPECT_EQ(Handle(keyed)->text(0), "renamed") << "the tree keeps the typed text";
    EXPECT_EQ(m_tree->GetLabelEditor(), nullptr);
}

TEST_F(WindowsTreeGraphTest, ClicksSelectOrHitTheStateIcon) {
    TreeGraphItem* a = Root()->AddChild("a label long enough to click", 1, true);
    a->SetStateImage(1);
    const QRect row = m_tree->visualItemRect(Handle(a));
    QTest::mouseClick(m_tree->viewport(), Qt::LeftButton, {}, row.center());
    EXPECT_EQ(m_target.events, (std::vector<std::string>{"select a label long enough to click"}));
    QTest::mouseClick(m_tree->viewport(), Qt::LeftButton, {},
                      QPoint(row.left() + 10, row.center().y()));
    EXPECT_EQ(m_target.events.back(), "icon a label long enough to click");
}

TEST_F(WindowsTreeGraphTest, MessagesGoToTheList) {
    m_graph->AddMessage("one");
    m_graph->AddMessage("定位");
    EXPECT_EQ(m_messages.count(), 2);
    EXPECT_EQ(m_messages.item(1)->text(), QString::fromUtf8("定位"));
    m_graph->ClearMessages();
    EXPECT_EQ(m_messages.count(), 0);
}

TEST_F(WindowsTreeGraphTest, TheModelOutlivesItsWidget) {
    TreeGraphItem* a = Root()->AddChild("a", 1, true);
    a->AddChild("b", 2, true);
    m_tree.reset();
    a->SetLabel("still a");
    a->SetHighlighted(true);
    a->Expand();
    EXPECT_FALSE(a->EditLabel());
    EXPECT_STREQ(a->GetLabel(), "still a");
    m_graph->Reset();
    EXPECT_EQ(m_graph->GetRoot()->GetChildCount(), 0u);
}

} // namespace
