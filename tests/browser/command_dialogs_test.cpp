// The commands' two modal dialogs, shown without a modal loop and driven by control id.
#include <QAbstractButton>
#include <QDir>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include "browser/dialog_units.h"
#include "browser/optimize_dialog.h"
#include "browser/xml_editor_dlg2.h"
#include "scenetree/optimize_options.h"

namespace {

// A check box or radio button takes a click on its box or text only.
void Click(QAbstractButton* button) {
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(6, button->height() / 2));
}

// Pictures for the docs go to the test's working directory (the build tree).
void SavePicture(QWidget& dialog, const char* name) {
    dialog.show();
    QCoreApplication::processEvents();
    EXPECT_TRUE(dialog.grab().save(QDir::current().filePath(QString::fromUtf8(name))));
}

TEST(XMLEditorDlg2Test, KeepsEnterAndEscapeAndStoresTheTextOnOkOnly) {
    XMLEditorDlg2 untitled(nullptr, QStringLiteral("x"));
    EXPECT_EQ(untitled.windowTitle(), "Edit Window");

    XMLEditorDlg2 editor(nullptr, QStringLiteral("FFFFFFFFFFFFFFF8 - Points:3\n0, 0, 0"),
                         QStringLiteral("part"));
    EXPECT_EQ(editor.windowTitle(), "part");
    auto* text = qobject_cast<QPlainTextEdit*>(obsidra::browser::FindControl(editor, 1312));
    ASSERT_NE(text, nullptr);
    editor.show();
    text->moveCursor(QTextCursor::End);
    QTest::keyClick(text, Qt::Key_Return);
    QTest::keyClicks(text, "3, 0,1,2");
    QTest::keyClick(text, Qt::Key_Escape);
    QTest::keyClick(&editor, Qt::Key_Escape);
    EXPECT_TRUE(editor.isVisible()) << "Escape does not close the window";
    EXPECT_EQ(editor.GetText(), "FFFFFFFFFFFFFFF8 - Points:3\n0, 0, 0") << "not stored yet";

    QTest::mouseClick(qobject_cast<QPushButton*>(obsidra::browser::FindControl(editor, 1)),
                      Qt::LeftButton);
    EXPECT_FALSE(editor.isVisible());
    EXPECT_EQ(editor.result(), QDialog::Accepted);
    EXPECT_EQ(editor.GetText(), "FFFFFFFFFFFFFFF8 - Points:3\n0, 0, 0\n3, 0,1,2");

    XMLEditorDlg2 cancelled(nullptr, QStringLiteral("old"));
    cancelled.show();
    cancelled.Editor()->setPlainText(QStringLiteral("new"));
    QTest::mouseClick(qobject_cast<QPushButton*>(obsidra::browser::FindControl(cancelled, 2)),
                      Qt::LeftButton);
    EXPECT_EQ(cancelled.result(), QDialog::Rejected);
    EXPECT_EQ(cancelled.GetText(), "old");

    XMLEditorDlg2 shell(
        nullptr,
        QStringLiteral("FFFFFFFFFFFFFFF8 - Points:4, 2 Faces in 0 Tristrips, LODS:0\n"
                       "0.000000, 0.000000, 0.000000,     1.000000, 0.000000, "
                       "0.000000,     0.000000, 1.000000, 0.000000,     1.000000, "
                       "1.000000, 0.000000\n3, 0,1,2   3, 1,3,2\n"),
        QStringLiteral("GEOMETRY"));
    SavePicture(shell, "browser-edit.png");
}

TEST(COptimizeDialogTest, ControlsDefaultsAndTheUserDataRule) {
    COptimizeDialog dialog(nullptr);
    EXPECT_EQ(dialog.windowTitle(), "Optimize Segment");
    const struct {
        int id;
        const char* text;
        bool checked;
    } kControls[] = {
        {1310, "Do Nothing", false},
        {1311, "Process Includes", true},
        {1312, "Expand Includes", false},
        {1329, "Collapse Matrices", false},
        {1315, "Localize Matrices", true},
        {1317, "Remove Duplicate", false},
        {1321, "Extract Attributes", false},
        {1322, "Generate Mapping", false},
        {1318, "Do Nothing", true},
        {1319, "Merge", false},
        {1320, "Instance", false},
        {1324, "Do Nothing", false},
        {1325, "Discard", false},
        {1326, "Preserve", true},
        {1328, "Merge", true},
        {1000, "Localize", true},
        {1340, "Discard", false},
        {1341, "Record", false},
        {1342, "Sequence", false},
        {1332, "Do Nothing", false},
        {1333, "Attributes and Spatial", false},
        {1334, "Attributes only", true},
        {1335, "Spatial only", false},
        {1, "OK", false},
        {2, "Cancel", false},
    };
    for (const auto& control : kControls) {
        QAbstractButton* button = dialog.Control(control.id);
        ASSERT_NE(button, nullptr) << control.id;
        EXPECT_EQ(button->text(), control.text) << control.id;
        EXPECT_EQ(button->isChecked(), control.checked) << control.id;
    }
    SavePicture(dialog, "browser-optimize.png");

    for (int greying : {1325, 1324}) {
        Click(dialog.Control(greying));
        for (int box : {1328, 1000}) {
            EXPECT_FALSE(dialog.Control(box)->isEnabled()) << greying << " " << box;
            EXPECT_TRUE(dialog.Control(box)->isChecked()) << "the check stays";
        }
    }
    Click(dialog.Control(1326));
    EXPECT_TRUE(dialog.Control(1328)->isEnabled());
    EXPECT_TRUE(dialog.Control(1000)->isEnabled());

    Click(dialog.Control(1000));
    Click(dialog.Control(1342));
    Click(dialog.Control(1335));
    Click(dialog.Control(1));
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(obsidra::scenetree::ComposeOptimizeOptions(dialog.GetOptions()),
              "process includes,localize matrices,segment names=sequence,preserve user "
              "data=merge,reorganize=spatial");
}

} // namespace
