#include "treegraph/qt/seg_tree_ctrl.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <utility>

#include "treegraph/qt/windows_tree_graph.h"
#include "treegraph/qt/windows_tree_graph_item.h"

CSegTreeCtrl::CSegTreeCtrl(QWidget* parent) : QTreeWidget(parent) {
    setHeaderHidden(true);
    setColumnCount(1);
    // Long labels (a reference's path, a geometry description) scroll sideways instead of being
    // cut. The column is sized from the rows in sight: measuring a whole page of 1000 rows would
    // triple the cost of opening it.
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setResizeContentsPrecision(0);
    setUniformRowHeights(true);
    setRootIsDecorated(true);
    setIconSize(QSize(16, 16));
    setSelectionMode(QAbstractItemView::SingleSelection);
    // A tree view of the platform edits a label on F2 or on a click of the selected item;
    // double-click stays for expanding.
    setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    setExpandsOnDoubleClick(true);

    connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* current) {
        if (m_graph) m_graph->OnControlSelectionChanged(current);
    });
    connect(this, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* item) {
        if (m_graph) m_graph->OnControlExpanding(item, true);
    });
    connect(this, &QTreeWidget::itemCollapsed, this, [this](QTreeWidgetItem* item) {
        if (m_graph) m_graph->OnControlExpanding(item, false);
    });
}

void CSegTreeCtrl::SetStateImageList(std::vector<QIcon> images) {
    m_stateImages = std::move(images);
}

const QIcon& CSegTreeCtrl::GetStateImage(int index) const {
    static const QIcon kNone;
    return index > 0 && index < static_cast<int>(m_stateImages.size())
               ? m_stateImages[static_cast<size_t>(index)]
               : kNone;
}

void CSegTreeCtrl::OnCommand(int commandId) {
    if (m_commandHandler) m_commandHandler(commandId);
}

void CSegTreeCtrl::RightClick(const QPoint& pos, Qt::KeyboardModifiers modifiers) {
    const QPoint globalPos = viewport()->mapToGlobal(pos);
    QTreeWidgetItem* hit = itemAt(pos);
    m_currentNode = WindowsTreeGraphItem::FromHandle(hit ? hit : currentItem());
    if (!m_menuProvider) return;
    std::unique_ptr<QMenu> menu = m_menuProvider({m_currentNode, globalPos, modifiers});
    if (!menu || m_noMenu) return;
    QAction* chosen = m_menuRunner ? m_menuRunner(*menu, globalPos) : menu->exec(globalPos);
    if (chosen && chosen->property("commandId").isValid())
        OnCommand(chosen->property("commandId").toInt());
}

bool CSegTreeCtrl::EditLabel(QTreeWidgetItem* item) {
    return item && edit(indexFromItem(item), AllEditTriggers, nullptr);
}

QWidget* CSegTreeCtrl::GetLabelEditor() const {
    return m_editedItem ? indexWidget(indexFromItem(m_editedItem)) : nullptr;
}

QTreeWidgetItem* CSegTreeCtrl::StateIconAt(const QPoint& pos) {
    QTreeWidgetItem* item = itemAt(pos);
    if (!item || item->icon(0).isNull()) return nullptr;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.index = indexFromItem(item);
    option.rect = visualRect(option.index);
    option.features |= QStyleOptionViewItem::HasDecoration | QStyleOptionViewItem::HasDisplay;
    option.icon = item->icon(0);
    option.text = item->text(0);
    option.decorationSize = iconSize();
    const QRect icon = style()->subElementRect(QStyle::SE_ItemViewItemDecoration, &option, this);
    return icon.contains(pos) ? item : nullptr;
}

void CSegTreeCtrl::ForgetItem(const QTreeWidgetItem* handle, const TreeGraphItem* node) {
    if (m_currentNode == node) m_currentNode = nullptr;
    if (m_editedItem == handle) m_editedItem = nullptr;
}

void CSegTreeCtrl::ForgetAllItems() {
    m_currentNode = nullptr;
    m_editedItem = nullptr;
}

// Only a request that opens the editor at once asks the graph; a click on the selected item
// first waits for a possible double-click and comes back here with AllEditTriggers.
bool CSegTreeCtrl::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    const bool opens = trigger == AllEditTriggers ||
                       (trigger == EditKeyPressed && (editTriggers() & EditKeyPressed));
    if (!opens || state() == EditingState || !index.isValid())
        return QTreeWidget::edit(index, trigger, event);
    QTreeWidgetItem* item = itemFromIndex(index);
    if (!m_graph || !m_graph->OnControlBeginLabelEdit(item)) return false;
    m_editedItem = item;
    if (QTreeWidget::edit(index, trigger, event)) return true;
    m_editedItem = nullptr;
    return false;
}

void CSegTreeCtrl::commitData(QWidget* editor) {
    EndLabelEdit(editor, true);
    QTreeWidget::commitData(editor);
}

void CSegTreeCtrl::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    EndLabelEdit(editor, false);
    QTreeWidget::closeEditor(editor, hint);
}

// The client hears of the end once: with the typed text when the editor commits, with no text
// when it closes without committing.
void CSegTreeCtrl::EndLabelEdit(QWidget* editor, bool accepted) {
    QTreeWidgetItem* item = std::exchange(m_editedItem, nullptr);
    if (!item || !m_graph) return;
    if (!accepted) {
        m_graph->OnControlEndLabelEdit(item, nullptr);
        return;
    }
    const auto* line = qobject_cast<QLineEdit*>(editor);
    const QByteArray text = (line ? line->text() : item->text(0)).toUtf8();
    m_graph->OnControlEndLabelEdit(item, text.constData());
}

void CSegTreeCtrl::mousePressEvent(QMouseEvent* event) {
    const QPoint pos = event->position().toPoint();
    if (event->button() == Qt::RightButton) {
        // The right button leaves the selection where it is: the menu is about the node under
        // the click, not a new selection.
        RightClick(pos, event->modifiers());
        event->accept();
        return;
    }
    if (event->button() == Qt::LeftButton && m_graph)
        if (QTreeWidgetItem* item = StateIconAt(pos)) m_graph->OnControlStateIconClick(item);
    QTreeWidget::mousePressEvent(event);
}
