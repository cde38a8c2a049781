#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

#include "components/qt/tong_ji_dialog.h"
#include "components/testing/memory_component_host.h"
#include "dialog_test.h"

namespace obsidra::components::qt {
namespace {

using components::testing::MemoryComponentHost;
using qt::testing::FindControl;
using Rows = std::vector<std::pair<QString, QString>>;

Rows ListRows(const CUxTongJiDialog& dialog) {
    Rows rows;
    const QTreeWidget* list = FindControl<QTreeWidget>(&dialog, CUxTongJiDialog::kListId);
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        rows.emplace_back(list->topLevelItem(i)->text(0), list->topLevelItem(i)->text(1));
    return rows;
}

TEST(CUxTongJiDialogTest, ListsEveryMinorCategoryInTheListsOrderWithTheTotal) {
    const struct {
        const char* name;
        MinorCategoryCounts counts;
        Rows rows;
        QString total;
        bool withHost = true;
    } cases[] = {
        {"no host", {}, {}, QStringLiteral("总构件个数->> 0"), false},
        {"empty", {}, {}, QStringLiteral("总构件个数->> 0")},
        {"sorted without case, Latin before Chinese",
         {{"内墙", 4}, {"Beam", 2}, {"alpha", 1}},
         {{"alpha", "1"}, {"Beam", "2"}, {"内墙", "4"}},
         QStringLiteral("总构件个数->> 7")},
    };
    for (const auto& c : cases) {
        MemoryComponentHost host;
        host.SetMinorCategoryCounts(c.counts);
        const CUxTongJiDialog dialog(c.withHost ? &host : nullptr);
        EXPECT_EQ(ListRows(dialog), c.rows) << c.name;
        EXPECT_EQ(FindControl<QLabel>(&dialog, CUxTongJiDialog::kTotalId)->text(), c.total)
            << c.name;
    }
}

TEST(CUxTongJiDialogTest, HasTheTemplatesCaptionColumnsAndButtons) {
    MemoryComponentHost host;
    CUxTongJiDialog dialog(&host);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("统计"));
    const QTreeWidget* list = FindControl<QTreeWidget>(&dialog, CUxTongJiDialog::kListId);
    EXPECT_EQ(list->headerItem()->text(0), QStringLiteral("小类"));
    EXPECT_EQ(list->headerItem()->text(1), QStringLiteral("数目"));
    EXPECT_EQ(list->columnWidth(0), 300);
    EXPECT_EQ(list->columnWidth(1), 200);
    QPushButton* ok = FindControl<QPushButton>(&dialog, CUxTongJiDialog::kOkId);
    EXPECT_EQ(ok->text(), QStringLiteral("确定"));
    EXPECT_TRUE(ok->isDefault());
    EXPECT_EQ(FindControl<QPushButton>(&dialog, CUxTongJiDialog::kCancelId)->text(),
              QStringLiteral("取消"));

    dialog.open();
    ok->click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(dialog.isVisible());
}

} // namespace
} // namespace obsidra::components::qt
