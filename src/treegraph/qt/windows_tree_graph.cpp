#include "treegraph/qt/windows_tree_graph.h"

#include <QListWidget>
#include <utility>

#include "treegraph/qt/seg_tree_ctrl.h"
#include "treegraph/qt/windows_tree_graph_item.h"

WindowsTreeGraph::WindowsTreeGraph(CSegTreeCtrl* tree, QListWidget* messages)
    : m_tree(tree), m_messages(messages) {
    if (tree) tree->SetGraph(this);
    SetRoot(new WindowsTreeGraphItem(this));
}

WindowsTreeGraph::~WindowsTreeGraph() {
    if (m_tree) m_tree->SetGraph(nullptr);
    DropAllItems(nullptr);
}

void WindowsTreeGraph::ClearMessages() {
    if (m_messages) m_messages->clear();
}

void WindowsTreeGraph::AddMessage(const char* line) {
    if (m_messages) m_messages->addItem(QString::fromUtf8(line ? line : ""));
}

void WindowsTreeGraph::Reset() {
    DropAllItems(new WindowsTreeGraphItem(this));
}

// Deleting the widget items one by one would cost a model notification each; the items go
// without the tree, and then the tree is emptied in one step.
void WindowsTreeGraph::DropAllItems(TreeGraphItem* newRoot) {
    Quiet quiet(this);
    QPointer<CSegTreeCtrl> tree = std::exchange(m_tree, nullptr);
    SetRoot(newRoot);
    m_tree = tree;
    if (!tree) return;
    tree->ForgetAllItems();
    tree->clear();
}

int WindowsTreeGraph::StateImageFor(const TreeGraphItem&) const {
    return 0;
}

void WindowsTreeGraph::OnControlSelectionChanged(QTreeWidgetItem* current) {
    if (IsQuiet()) return;
    if (WindowsTreeGraphItem* item = WindowsTreeGraphItem::FromHandle(current)) OnSelectItem(item);
}

void WindowsTreeGraph::OnControlExpanding(QTreeWidgetItem* handle, bool expanding) {
    if (IsQuiet()) return;
    WindowsTreeGraphItem* item = WindowsTreeGraphItem::FromHandle(handle);
    if (!item) return;
    OnExpandItem(item, expanding);
    // An item that promised children and turned out to have none loses its expander, as the
    // platform's tree does.
    if (expanding && handle->childCount() == 0)
        handle->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
}

bool WindowsTreeGraph::OnControlBeginLabelEdit(QTreeWidgetItem* handle) {
    WindowsTreeGraphItem* item = WindowsTreeGraphItem::FromHandle(handle);
    if (!item || (item->GetKey() == 0 && !item->GetTag())) return false;
    OnBeginLabelEdit(item, handle->text(0).toUtf8().constData());
    return item->IsEditable();
}

void WindowsTreeGraph::OnControlEndLabelEdit(QTreeWidgetItem* handle, const char* text) {
    if (WindowsTreeGraphItem* item = WindowsTreeGraphItem::FromHandle(handle))
        OnEndLabelEdit(item, text);
}

void WindowsTreeGraph::OnControlStateIconClick(QTreeWidgetItem* handle) {
    if (WindowsTreeGraphItem* item = WindowsTreeGraphItem::FromHandle(handle))
        OnStateIconClick(item);
}
