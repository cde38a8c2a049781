#include "components/qt/tong_ji_dialog.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

#include "components/minor_category_statistics.h"
#include "components/qt/dialog_units.h"

namespace obsidra::components::qt {

CUxTongJiDialog::CUxTongJiDialog(ComponentHost* host, QWidget* parent)
    : QDialog(parent), m_list(new QTreeWidget(this)), m_total(new QLabel(this)) {
    setWindowTitle(QStringLiteral("统计"));
    const DialogUnits units(font());

    PlaceControl(m_list, kListId, units, {7, 7, 369, 152});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setColumnCount(2);
    m_list->setHeaderLabels({QStringLiteral("小类"), QStringLiteral("数目")});
    m_list->header()->setStretchLastSection(false);
    m_list->setColumnWidth(0, 300);
    m_list->setColumnWidth(1, 200);

    PlaceControl(m_total, kTotalId, units, {7, 172, 207, 16});
    m_total->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    auto* ok = new QPushButton(QStringLiteral("确定"), this);
    PlaceControl(ok, kOkId, units, {205, 187, 50, 14});
    ok->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("取消"), this);
    PlaceControl(cancel, kCancelId, units, {326, 187, 50, 14});
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    // The rows come in the sorted list's order already, so the widget does not sort again.
    const MinorCategoryStatistics statistics = CollectMinorCategoryStatistics(host);
    QList<QTreeWidgetItem*> rows;
    rows.reserve(static_cast<qsizetype>(statistics.rows.size()));
    for (const MinorCategoryRow& row : statistics.rows)
        rows.append(new QTreeWidgetItem(
            {QString::fromStdString(row.name), QString::fromStdString(row.countText)}));
    m_list->addTopLevelItems(rows);
    m_total->setText(QString::fromStdString(statistics.totalLine));

    setFixedSize(units.Size(376 + 7, 201 + 7));
}

} // namespace obsidra::components::qt
