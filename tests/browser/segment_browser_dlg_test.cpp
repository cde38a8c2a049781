// The segment browser driven as a person would: controls found by id, menu items by command id.
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "browser/dialog_units.h"
#include "browser/segment_browser_dlg.h"
#include "hc/hc_test.h"
#include "mvo/base_model.h"
#include "mvo/base_view.h"
#include "scenetree/hoops_segment_tree.h"
#include "treegraph/qt/windows_tree_graph_item.h"

namespace {

// A menu as the user saw it: each item's text and command id, submenus by title.
struct ShownMenu {
    std::vector<std::pair<std::string, int>> items;
    std::vector<std::string> submenus;
};

// The model holds "big" (2,345 subsegments), "part" (a coloured triangle) and a style of "part".
class SegmentBrowserTest : public HcTest {
protected:
    void SetUp() override {
        HcTest::SetUp();
        m_model = std::make_unique<HBaseModel>();
        m_view = std::make_unique<HBaseView>(m_model.get());
        HC_Open_Segment_By_Key(m_view->GetModelKey());
        HC_Open_Segment("big");
        for (int i = 0; i < 2345; ++i)
            HC_Create_Segment(("c" + std::to_string(i)).c_str());
        HC_Close_Segment();
        m_part = HC_Open_Segment("part");
        HC_Set_Color("faces=red");
        m_shell = Triangle();
        HC_Close_Segment();
        HC_Open_Segment("styled");
        m_style = HC_Style_Segment("../part");
        HC_Close_Segment();
        HC_Close_Segment();

        m_dialog = std::make_unique<CSegmentBrowserDlg>(nullptr, m_view.get());
        m_dialog->SetMessageBox([this](const QString& text) { m_boxes.push_back(text); });
        m_dialog->Tree()->SetMenuRunner([this](QMenu& menu, const QPoint&) -> QAction* {
            m_menu = ShownMenu{};
            for (QAction* action : menu.actions()) {
                if (action->menu())
                    m_menu.submenus.push_back(action->text().toStdString());
                else if (!action->isSeparator())
                    m_menu.items.emplace_back(action->text().toStdString(),
                                              action->property("commandId").toInt());
            }
            ++m_menusShown;
            for (QAction* action : menu.actions())
                if (action->property("commandId").toInt() == m_choose) return action;
            return nullptr;
        });
        m_dialog->SetDialogRunner([this](QDialog& dialog) {
            m_dialogs.push_back(dialog.windowTitle().toStdString());
            dialog.show();
            return m_answer ? m_answer(dialog) : int(QDialog::Rejected);
        });
        m_dialog->SetFileChooser(
            [this](const obsidra::scenetree::FileRequest&, bool) { return m_file; });
        m_dialog->show();
    }
    void TearDown() override {
        m_dialog.reset();
        m_view.reset();
        m_model.reset();
        EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
        HcTest::TearDown();
    }

    template <typename T = QWidget>
    T* Control(int id) {
        auto* control = qobject_cast<T*>(m_dialog->Control(id));
        EXPECT_NE(control, nullptr) << "control " << id;
        return control;
    }
    CSegTreeCtrl& Tree() { return *m_dialog->Tree(); }
    QTreeWidgetItem* Top() { return Tree().topLevelItem(0); }
    // The child of item with that text, expanded first as a click on the expander would.
    QTreeWidgetItem* Open(QTreeWidgetItem* item, const char* text) {
        Tree().expandItem(item);
        for (int i = 0; i < item->childCount(); ++i)
            if (item->child(i)->text(0) == QString::fromUtf8(text)) return item->child(i);
        ADD_FAILURE() << "no " << text << " under " << item->text(0).toStdString();
        return item;
    }
    static std::vector<std::string> Texts(const QTreeWidgetItem* parent) {
        std::vector<std::string> texts;
        for (int i = 0; i < parent->childCount(); ++i)
            texts.push_back(parent->child(i)->text(0).toStdString());
        return texts;
    }
    void RightClick(QTreeWidgetItem* item, Qt::KeyboardModifiers modifiers = {}) {
        Tree().scrollToItem(item);
        QTest::mouseClick(Tree().viewport(), Qt::RightButton, modifiers,
                          Tree().visualItemRect(item).center());
    }
    std::vector<std::string> Lines() {
        std::vector<std::string> lines;
        auto* list = m_dialog->GetMessageList();
        for (int i = 0; i < list->count(); ++i)
            lines.push_back(list->item(i)->text().toStdString());
        return lines;
    }
    void Locate(const char* number) {
        Control<QLineEdit>(1000)->setText(QString::fromUtf8(number));
        QTest::mouseClick(Control<QPushButton>(1014), Qt::LeftButton);
    }

    std::unique_ptr<HBaseModel> m_model;
    std::unique_ptr<HBaseView> m_view;
    std::unique_ptr<CSegmentBrowserDlg> m_dialog;
    HC_KEY m_part = 0;
    HC_KEY m_shell = 0;
    HC_KEY m_style = 0;
    std::vector<QString> m_boxes;
    // The commands' modal dialogs: their captions, and what the user does in them.
    std::vector<std::string> m_dialogs;
    std::function<int(QDialog&)> m_answer;
    QString m_file;
    ShownMenu m_menu;
    int m_menusShown = 0;
    int m_choose = 0;
};

TEST_F(SegmentBrowserTest, TheTemplatesControlsCarryTheirIdsAndTexts) {
    EXPECT_EQ(m_dialog->windowTitle(), "Segment Brower");
    const struct {
        int id;
        const char* text;
    } kButtons[] = {{1231, "Refresh"}, {1232, "Search"}, {1014, "搜索几何"}, {1057, "OK"}};
    for (const auto& button : kButtons)
        EXPECT_EQ(Control<QPushButton>(button.id)->text(), QString::fromUtf8(button.text));
    EXPECT_EQ(Control<QCheckBox>(1555)->text(), "Show Boundings");
    EXPECT_EQ(Control<QLabel>(1001)->text(), QString::fromUtf8("定位出错几何"));
    for (int id : {1320, 1000, 1002, 1566, 1567})
        EXPECT_NE(m_dialog->Control(id), nullptr) << id;

    QStringList roots;
    for (int i = 0; i < Control<QListWidget>(1058)->count(); ++i)
        roots << Control<QListWidget>(1058)->item(i)->text();
    EXPECT_EQ(roots,
              QStringList({"Model Segment", "Scene Segment", "View Segment", "Root Segment"}));
    EXPECT_EQ(Control<QListWidget>(1058)->currentRow(), 0);
    QStringList types;
    for (int i = 0; i < Control<QComboBox>(1554)->count(); ++i)
        types << Control<QComboBox>(1554)->itemText(i);
    EXPECT_EQ(types,
              QStringList({"Attribute", "Geometry", "Segment", "Include", "Style",
                           "Segment Reference", "Geometry Reference", "Definition", "Keys"}));
    EXPECT_EQ(m_dialog->GetSearchTypeCode(), 1);
}

TEST_F(SegmentBrowserTest, ALargeSegmentOpensInPagesAndANodeShowsItsLines) {
    QTreeWidgetItem* big = Open(Top(), "big");
    QTreeWidgetItem* page = Open(big, "SEGMENTS 1-1000");
    Tree().expandItem(page);
    EXPECT_EQ(page->childCount(), 1000);
    EXPECT_EQ(Texts(big), (std::vector<std::string>{"SEGMENTS 1-1000", "SEGMENTS 1001-2000",
                                                    "SEGMENTS 2001-2345"}));

    Tree().setCurrentItem(Open(Top(), "part"));
    const std::vector<std::string> lines = Lines();
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[0], Path(m_part));
    EXPECT_EQ(lines[2], "COLOR: faces=red");

    Tree().clearSelection();
    Control<QListWidget>(1566)->setCurrentRow(2);
    QTest::keyClick(Control<QListWidget>(1566), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "COLOR: faces=red");
}

TEST_F(SegmentBrowserTest, TheRightButtonOffersTheMenuOfTheNodesKind) {
    QTreeWidgetItem* part = Open(Top(), "part");
    QTreeWidgetItem* kind = Open(Open(part, "GEOMETRY"), "SHELL");
    Tree().expandItem(kind);
    ASSERT_EQ(kind->childCount(), 1);
    RightClick(kind->child(0));
    EXPECT_EQ(m_menu.items, (std::vector<std::pair<std::string, int>>{{"Edit", 5289}}));

    m_dialog->GetTreeModel()->AddAttribute(WindowsTreeGraphItem::FromHandle(part), -1, "COLOR");
    RightClick(part->child(part->childCount() - 1));
    EXPECT_EQ(m_menu.items, (std::vector<std::pair<std::string, int>>{{"Undefine Attribute", 5261},
                                                                      {"Edit", 5289}}));

    RightClick(part);
    EXPECT_EQ(m_menu.submenus, (std::vector<std::string>{"Add Attribute", "Show Net Attribute"}));
    ASSERT_EQ(m_menu.items.size(), 15u);
    EXPECT_EQ(m_menu.items.front(), (std::pair<std::string, int>{"Show Bounding", 5292}));
    EXPECT_EQ(m_menu.items.back(), (std::pair<std::string, int>{"GotoStyleInclude", 5315}));

    QTreeWidgetItem* styles = Open(Open(Top(), "styled"), "STYLES");
    Tree().expandItem(styles);
    ASSERT_EQ(styles->childCount(), 1);
    const int shown = m_menusShown;
    RightClick(styles->child(0));
    EXPECT_EQ(m_menusShown, shown + 1) << "a style gets the full menu";
    RightClick(Open(part, "GEOMETRY"));
    EXPECT_EQ(m_menusShown, shown + 1) << "a grouping node gets none";
}

TEST_F(SegmentBrowserTest, CommandsReachTheTreeByIdAndCtrlClickFits) {
    QTreeWidgetItem* part = Open(Top(), "part");
    m_choose = 5281;
    RightClick(part);
    EXPECT_EQ(m_view->GetFittedKey(), m_part) << "Zoom To Segment";
    EXPECT_EQ(Tree().GetCurrentNode(), WindowsTreeGraphItem::FromHandle(part));

    const int shown = m_menusShown;
    RightClick(Top(), Qt::ControlModifier);
    EXPECT_EQ(m_view->GetFittedKey(), m_view->GetModelKey());
    EXPECT_EQ(m_menusShown, shown) << "Ctrl+click fits and shows no menu";
}

TEST_F(SegmentBrowserTest, ASearchRevealsAndSelectsItsHit) {
    char partKey[32];
    std::snprintf(partKey, sizeof partKey, "%llX", static_cast<unsigned long long>(m_part));
    const struct {
        const char* type;
        int code;
        std::string text;
        const char* hit;
        const char* parent;
    } kCases[] = {
        {"Segment", 3, "c2100", "c2100", "SEGMENTS 2001-2345"},
        {"Keys", 9, partKey, "part", nullptr},
    };
    for (const auto& row : kCases) {
        Control<QComboBox>(1554)->setCurrentText(row.type);
        EXPECT_EQ(m_dialog->GetSearchTypeCode(), row.code);
        Control<QLineEdit>(1320)->setText(QString::fromStdString(row.text));
        QTest::mouseClick(Control<QPushButton>(1232), Qt::LeftButton);
        QTreeWidgetItem* hit = Tree().currentItem();
        ASSERT_NE(hit, nullptr) << row.type;
        EXPECT_EQ(hit->text(0), row.hit);
        if (row.parent) {
            EXPECT_EQ(hit->parent()->text(0), row.parent);
        }
        EXPECT_TRUE(hit->data(0, Qt::BackgroundRole).isValid()) << "the hit is highlighted";
    }

    Control<QComboBox>(1554)->setCurrentIndex(-1);
    EXPECT_EQ(m_dialog->GetSearchTypeCode(), 0);
    Tree().setCurrentItem(Top());
    QTest::mouseClick(Control<QPushButton>(1232), Qt::LeftButton);
    EXPECT_EQ(Tree().currentItem(), Top()) << "no type, no search";
}

TEST_F(SegmentBrowserTest, LocatingAShellByNumberTogglesItsSelection) {
    for (const char* nothing : {"", "abc", "12345"}) {
        Locate(nothing);
        ASSERT_EQ(m_boxes.size(), 1u) << nothing;
        EXPECT_EQ(m_boxes.back(), QString::fromUtf8("没有搜索结果"));
        m_boxes.clear();
    }
    const std::string number = std::to_string(static_cast<std::int32_t>(m_shell));
    Locate(number.c_str());
    EXPECT_TRUE(m_boxes.empty());
    EXPECT_TRUE(m_view->GetSelection()->IsSelected(m_shell));
    EXPECT_EQ(m_dialog->GetLocateResult().toStdString(),
              "GemKey: " + std::to_string(m_shell) + " ,OwnerKey: " + std::to_string(m_part) +
                  " \r\nPath: " + Path(m_part));
    EXPECT_TRUE(Control<QPlainTextEdit>(1002)->toPlainText().startsWith("GemKey: "));
    Locate(number.c_str());
    EXPECT_FALSE(m_view->GetSelection()->IsSelected(m_shell));
}

TEST_F(SegmentBrowserTest, ResizingFollowsTheLayoutRules) {
    m_dialog->resize(500, 600);
    EXPECT_EQ(Control(1566)->size(), QSize(485, 60));
    EXPECT_EQ(Control(1567)->size(), QSize(485, 410));
    EXPECT_EQ(Control(1057)->pos(), QPoint(420, 572));
    EXPECT_FALSE(Control(1555)->isEnabled()) << "greyed from the first sizing on";
    m_dialog->resize(100, 100);
    EXPECT_EQ(m_dialog->size(), QSize(250, 300));
}

TEST_F(SegmentBrowserTest, RebuildsStartOverAndKeepShowBoundings) {
    Tree().expandItem(Top());
    m_dialog->GetTreeModel()->SetShowBounding(true);
    QTest::mouseClick(Control<QPushButton>(1231), Qt::LeftButton);
    EXPECT_FALSE(Top()->isExpanded());
    EXPECT_EQ(Top()->childCount(), 0);
    EXPECT_TRUE(m_dialog->GetTreeModel()->GetShowBounding());

    Control<QListWidget>(1058)->setCurrentRow(3);
    EXPECT_EQ(Top()->text(0), "/");
    Control<QListWidget>(1058)->setCurrentRow(1);
    EXPECT_EQ(m_dialog->GetRootKey(), m_view->GetSceneKey());
    Control<QListWidget>(1058)->setCurrentRow(0);
    EXPECT_EQ(m_dialog->GetRootKey(), m_view->GetModelKey());
    EXPECT_TRUE(m_dialog->GetTreeModel()->GetShowBounding());
}

TEST_F(SegmentBrowserTest, EscapeAndEnterGoToTheLabelEditor) {
    QTreeWidgetItem* part = Open(Top(), "part");
    Tree().setCurrentItem(part);
    QTest::keyClick(&Tree(), Qt::Key_F2);
    ASSERT_NE(Tree().GetLabelEditor(), nullptr);
    QTest::keyClick(Tree().GetLabelEditor(), Qt::Key_Escape);
    EXPECT_EQ(Tree().GetLabelEditor(), nullptr);
    EXPECT_TRUE(m_dialog->isVisible()) << "Escape cancelled the edit only";

    QTest::keyClick(&Tree(), Qt::Key_F2);
    auto* editor = qobject_cast<QLineEdit*>(Tree().GetLabelEditor());
    ASSERT_NE(editor, nullptr);
    editor->setText("piece");
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_dialog->isVisible()) << "Enter committed the edit only";
    EXPECT_EQ(Path(m_part).substr(Path(m_part).rfind('/')), "/piece");

    QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(m_dialog->isVisible()) << "without an editor Escape hides the dialog";
}

TEST_F(SegmentBrowserTest, ClosingHidesAndStopsShowBoundings) {
    m_dialog->close();
    EXPECT_FALSE(m_dialog->isVisible());
    EXPECT_FALSE(m_dialog->IsReady());
    Control<QCheckBox>(1555)->setChecked(true);
    m_dialog->ShowBoundings();
    EXPECT_FALSE(m_dialog->GetTreeModel()->GetShowBounding());
}

// Presses a button of a command's dialog by id and returns the dialog's result.
int Press(QDialog& dialog, int id) {
    QTest::mouseClick(qobject_cast<QPushButton*>(obsidra::browser::FindControl(dialog, id)),
                      Qt::LeftButton);
    return dialog.result();
}

TEST_F(SegmentBrowserTest, EditShowsAShellsCoordinatesAndTakesThemBack) {
    QTreeWidgetItem* kind = Open(Open(Open(Top(), "part"), "GEOMETRY"), "SHELL");
    Tree().expandItem(kind);
    m_answer = [](QDialog& dialog) {
        auto* text = qobject_cast<QPlainTextEdit*>(obsidra::browser::FindControl(dialog, 1312));
        QString edited = text->toPlainText();
        EXPECT_TRUE(edited.contains("\n3, 0,1,2\n")) << edited.toStdString();
        text->setPlainText(edited.replace("1.000000, 0.000000, 0.000000", "4, 0, 0"));
        return Press(dialog, 1);
    };
    m_choose = 5289;
    RightClick(kind->child(0));
    EXPECT_EQ(m_dialogs, std::vector<std::string>{"Edit Window"});
    HC_POINT points[3];
    int count = 0, length = 0, faces[4];
    HC_Show_Shell(m_shell, &count, points, &length, faces);
    EXPECT_EQ(points[1].x, 4.0f);

    // A double-click edits an attribute line at once, under its segment's caption.
    QTreeWidgetItem* part = Open(Top(), "part");
    m_dialog->GetTreeModel()->AddAttribute(WindowsTreeGraphItem::FromHandle(part), -1, "COLOR");
    m_answer = [](QDialog& dialog) { return Press(dialog, 2); };
    QTreeWidgetItem* line = part->child(part->childCount() - 1);
    Tree().scrollToItem(line);
    // A view takes a double-click only after a press on the same row.
    const QPoint at = Tree().visualItemRect(line).center();
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(Tree().viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(m_dialogs.back(), "part");
}

TEST_F(SegmentBrowserTest, OptimizeRunsTheDialogsChoicesAndRebuildsTheTree) {
    Tree().expandItem(Top());
    HC_POINT min{}, max{};
    HC_Open_Segment_By_Key(m_part);
    HC_Compute_Circumcuboid(".", &min, &max);
    HC_Close_Segment();
    m_answer = [](QDialog& dialog) { return Press(dialog, 2); };
    m_choose = 5306;
    RightClick(Open(Top(), "part"));
    EXPECT_TRUE(Top()->isExpanded()) << "cancelled: the tree stays";

    m_answer = [](QDialog& dialog) { return Press(dialog, 1); };
    RightClick(Open(Top(), "part"));
    EXPECT_EQ(m_dialogs, (std::vector<std::string>{"Optimize Segment", "Optimize Segment"}));
    EXPECT_FALSE(Top()->isExpanded()) << "rebuilt as Refresh does";
    HC_POINT after[2]{};
    HC_Open_Segment_By_Key(m_part);
    HC_Compute_Circumcuboid(".", &after[0], &after[1]);
    HC_Close_Segment();
    EXPECT_EQ(std::vector<float>({after[0].x, after[0].y, after[1].x, after[1].y}),
              std::vector<float>({min.x, min.y, max.x, max.y}));
}

TEST_F(SegmentBrowserTest, CommandsShowTheirChangesInTheTree) {
    QTreeWidgetItem* part = Open(Top(), "part");
    const int children = part->childCount();
    m_choose = 5285;
    RightClick(part);
    ASSERT_EQ(part->childCount(), children + 1) << "Create Child Segment";
    EXPECT_TRUE(part->child(children)->text(0).startsWith('@'));

    QTreeWidgetItem* styles = Open(Open(Top(), "styled"), "STYLES");
    Tree().expandItem(styles);
    m_choose = 5315;
    RightClick(styles->child(0));
    EXPECT_EQ(Tree().currentItem(), part) << "GotoStyleInclude";

    m_file = "scene";
    m_choose = 5311;
    RightClick(part);
    EXPECT_EQ(m_boxes, std::vector<QString>{
                           "Error: No file extension. Could not determine input file format.\n"});

    m_choose = 5268;
    RightClick(part);
    EXPECT_EQ(Texts(Top()), (std::vector<std::string>{"big", "styled"})) << "Delete Segment";
}

} // namespace
