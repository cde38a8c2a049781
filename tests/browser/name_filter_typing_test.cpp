// Typing into the browser's name filter while a filter runs over a large segment.
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "browser/segment_browser_dlg.h"
#include "hc/hc_test.h"
#include "mvo/base_model.h"
#include "mvo/base_view.h"

namespace {

class NameFilterTyping : public HcTest {};

// A key typed while the walk of the text before it runs: the first hits of that walk show at
// once, and only the new text's result stays, with the row picked meanwhile still current.
TEST_F(NameFilterTyping, AKeyMidWalkDropsTheRestOfTheOldFilter) {
    HBaseModel model;
    HBaseView view(&model);
    HC_Open_Segment_By_Key(view.GetModelKey());
    HC_Open_Segment("big");
    for (int i = 0; i < 20000; ++i)
        HC_Create_Segment(("c" + std::to_string(i)).c_str());
    HC_Close_Segment();
    HC_Close_Segment();
    CSegmentBrowserDlg dialog(nullptr, &view);
    dialog.show();
    auto* filter = static_cast<QLineEdit*>(dialog.Control(CSegmentBrowserDlg::kNameFilterId));
    QTreeWidget& tree = *dialog.Tree();

    QTest::keyClicks(filter, QStringLiteral("c19"));
    QApplication::processEvents();
    ASSERT_TRUE(dialog.IsNameFilterRunning()) << "the walk goes on after its first hits";
    QTreeWidgetItem* big = tree.topLevelItem(0)->child(0);
    ASSERT_NE(big, nullptr);
    EXPECT_EQ(big->text(0), "big");
    EXPECT_EQ(big->childCount(), 111) << "the first hits: c19, c190-c199, c1900-c1999";
    tree.setCurrentItem(big->child(110));

    QTest::keyClick(filter, Qt::Key_9);
    for (int slice = 0; dialog.IsNameFilterRunning() && slice < 1000; ++slice)
        QApplication::processEvents();
    EXPECT_FALSE(dialog.IsNameFilterRunning());
    big = tree.topLevelItem(0)->child(0);
    ASSERT_NE(big, nullptr);
    EXPECT_EQ(big->childCount(), 111) << "c199, c1990-c1999, c19900-c19999";
    EXPECT_EQ(big->child(110)->text(0), "c19999");
    ASSERT_NE(tree.currentItem(), nullptr);
    EXPECT_EQ(tree.currentItem()->text(0), "c1999") << "the row picked among the first hits";
}

} // namespace
