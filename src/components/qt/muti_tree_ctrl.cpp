#include "components/qt/muti_tree_ctrl.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QStyle>
#include <QStyleOptionViewItem>

namespace obsidra::components::qt {

CMutiTreeCtrl::CMutiTreeCtrl(QWidget* parent)
    : QTreeView(parent), m_model(new ComponentTreeModel(nullptr, this)) {
    setModel(m_model);
    setHeaderHidden(true);
    // Long labels deep in the tree scroll sideways rather than being cut short; the view measures
    // only the rows on screen.
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    // Every row is one line of text with a box: the view need not measure 400,000 rows.
    setUniformRowHeights(true);
    setRootIsDecorated(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    connect(m_model, &ComponentTreeModel::InformationTextChanged, this,
            &CMutiTreeCtrl::ShowInformation);
    connect(m_model, &ComponentTreeModel::HighlightMarksChanged, this, [this](bool repaintNow) {
        if (repaintNow) viewport()->update();
    });
}

void CMutiTreeCtrl::SetInformationBox(QPlainTextEdit* box) {
    m_informationBox = box;
}

QRect CMutiTreeCtrl::CheckBoxRect(NodeIndex node) const {
    const QModelIndex index = m_model->IndexOf(node);
    const QVariant state = index.data(Qt::CheckStateRole);
    const QRect row = visualRect(index);
    if (!state.isValid() || row.isEmpty()) return {};
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = row;
    option.index = index;
    option.features |= QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
    option.checkState = state.value<Qt::CheckState>();
    option.text = index.data(Qt::DisplayRole).toString();
    return style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, this);
}

void CMutiTreeCtrl::SetFilterText(const QString& text) {
    const bool wasFiltering = m_model->Filter().Active();
    if (!wasFiltering) {
        if (text.isEmpty()) return;
        m_expandedBeforeFilter.clear();
        CollectExpanded({}, m_expandedBeforeFilter);
    }
    const NodeIndex selected = Tree().Selected();
    m_model->SetFilter(text.toStdString());
    if (m_model->Filter().Active()) {
        expandAll();
    } else {
        for (const NodeIndex node : m_expandedBeforeFilter)
            setExpanded(m_model->IndexOf(node), true);
        m_expandedBeforeFilter.clear();
    }
    // The reset cleared the view's current row; the tree's selection is still the same node.
    if (const QModelIndex current = m_model->IndexOf(selected); current.isValid()) {
        setCurrentIndex(current);
        scrollTo(current);
    }
}

// Only expanded rows are walked: the cost is that of the rows the user has opened.
void CMutiTreeCtrl::CollectExpanded(const QModelIndex& parent,
                                    std::vector<NodeIndex>& nodes) const {
    for (int row = 0, rows = m_model->rowCount(parent); row < rows; ++row) {
        const QModelIndex child = m_model->index(row, 0, parent);
        if (!isExpanded(child)) continue;
        nodes.push_back(m_model->NodeOf(child));
        CollectExpanded(child, nodes);
    }
}

void CMutiTreeCtrl::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        const NodeIndex node = m_model->NodeOf(indexAt(event->position().toPoint()));
        if (node != kNoNode && CheckBoxRect(node).contains(event->position().toPoint()))
            Tree().ToggleByMouse(node);
    }
    QTreeView::mousePressEvent(event);
}

// The first press of a double click on a box has toggled it; the second neither toggles it back
// nor expands the row.
void CMutiTreeCtrl::mouseDoubleClickEvent(QMouseEvent* event) {
    const NodeIndex node = m_model->NodeOf(indexAt(event->position().toPoint()));
    if (event->button() == Qt::LeftButton && node != kNoNode &&
        CheckBoxRect(node).contains(event->position().toPoint()))
        return;
    QTreeView::mouseDoubleClickEvent(event);
}

void CMutiTreeCtrl::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) {
        Tree().ToggleSelectedByKey();
        return;
    }
    QTreeView::keyPressEvent(event);
}

// "Isolate" and "X-ray" act on the node under the click; "Show all" on the whole building.
void CMutiTreeCtrl::contextMenuEvent(QContextMenuEvent* event) {
    const NodeIndex node = m_model->NodeOf(indexAt(event->pos()));
    QMenu menu(this);
    const auto add = [&menu](const char* text, int commandId) {
        QAction* action = menu.addAction(QString::fromUtf8(text));
        action->setProperty("commandId", commandId);
        return action;
    };
    add("Isolate", kIsolateCommand)->setEnabled(node != kNoNode);
    add("X-ray", kXRayCommand)->setEnabled(node != kNoNode);
    add("Show all", kShowAllCommand);
    QAction* chosen =
        m_menuRunner ? m_menuRunner(menu, event->globalPos()) : menu.exec(event->globalPos());
    if (!chosen) return;
    switch (chosen->property("commandId").toInt()) {
    case kIsolateCommand:
        Tree().Isolate(node);
        break;
    case kXRayCommand:
        Tree().XRay(node);
        break;
    case kShowAllCommand:
        Tree().ShowAll();
        break;
    }
}

void CMutiTreeCtrl::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    Tree().Select(m_model->NodeOf(current));
}

void CMutiTreeCtrl::ShowInformation(const QString& text) {
    if (!m_informationBox) return;
    // The texts end their lines in CR LF; the edit box wants one break per line.
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    m_informationBox->setPlainText(lines);
}

} // namespace obsidra::components::qt
