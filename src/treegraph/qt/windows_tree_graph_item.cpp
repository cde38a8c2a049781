#include "treegraph/qt/windows_tree_graph_item.h"

#include <QTreeWidgetItem>

#include "treegraph/qt/seg_tree_ctrl.h"
#include "treegraph/qt/windows_tree_graph.h"

namespace {

constexpr int kStateImageRole = Qt::UserRole + 1;
constexpr int kHighlightedRole = Qt::UserRole + 2;

// The highlighted look: a colour of its own, so that a highlighted row and the selected row
// can be told apart.
const QColor kHighlightBackground(255, 214, 110);

// A widget item that knows the graph item it shows.
class ControlItem : public QTreeWidgetItem {
public:
    static constexpr int kType = QTreeWidgetItem::UserType + 14;
    explicit ControlItem(WindowsTreeGraphItem* model) : QTreeWidgetItem(kType), m_model(model) {}
    WindowsTreeGraphItem* Model() const { return m_model; }

private:
    WindowsTreeGraphItem* m_model;
};

} // namespace

WindowsTreeGraphItem::WindowsTreeGraphItem(WindowsTreeGraph* graph) : TreeGraphItem(graph) {}

WindowsTreeGraphItem::~WindowsTreeGraphItem() {
    DeleteContents();
    if (!m_handle) return;
    if (CSegTreeCtrl* tree = View()->GetTreeControl()) {
        WindowsTreeGraph::Quiet quiet(View());
        tree->ForgetItem(m_handle, this);
        delete m_handle;
    }
}

WindowsTreeGraph* WindowsTreeGraphItem::View() const {
    return static_cast<WindowsTreeGraph*>(GetGraph());
}

QTreeWidgetItem* WindowsTreeGraphItem::GetHandle() const {
    CSegTreeCtrl* tree = View()->GetTreeControl();
    if (!tree) return nullptr;
    if (m_handle) return m_handle;
    return View()->GetRoot() == this ? tree->invisibleRootItem() : nullptr;
}

QTreeWidgetItem* WindowsTreeGraphItem::Shown() const {
    return View()->GetTreeControl() ? m_handle : nullptr;
}

WindowsTreeGraphItem* WindowsTreeGraphItem::FromHandle(const QTreeWidgetItem* handle) {
    return handle && handle->type() == ControlItem::kType
               ? static_cast<const ControlItem*>(handle)->Model()
               : nullptr;
}

void WindowsTreeGraphItem::MakeHandle(QTreeWidgetItem* parentHandle, int index, bool hasChildren) {
    CSegTreeCtrl* tree = View()->GetTreeControl();
    if (!parentHandle || !tree) return;
    auto* handle = new ControlItem(this);
    handle->setText(0, QString::fromUtf8(GetLabel() ? GetLabel() : ""));
    handle->setFlags(handle->flags() | Qt::ItemIsEditable);
    handle->setChildIndicatorPolicy(hasChildren ? QTreeWidgetItem::ShowIndicator
                                                : QTreeWidgetItem::DontShowIndicatorWhenChildless);
    if (int image = View()->StateImageFor(*this) & 0xF) {
        handle->setData(0, kStateImageRole, image);
        handle->setIcon(0, tree->GetStateImage(image));
    }
    WindowsTreeGraph::Quiet quiet(View());
    parentHandle->insertChild(index, handle);
    m_handle = handle;
}

TreeGraphItem* WindowsTreeGraphItem::AddChild(const char* label, TreeGraphKey key, bool atEnd) {
    auto* child = new WindowsTreeGraphItem(View());
    child->Init(label, key, 0);
    if (!AttachChild(child, atEnd)) {
        delete child;
        return nullptr;
    }
    QTreeWidgetItem* parentHandle = GetHandle();
    if (parentHandle)
        child->MakeHandle(parentHandle, atEnd ? parentHandle->childCount() : 0, false);
    return child;
}

TreeGraphItem* WindowsTreeGraphItem::AddSibling(const char* label, TreeGraphKey key,
                                                bool hasChildren) {
    auto* parent = static_cast<WindowsTreeGraphItem*>(GetParent());
    if (!parent) return nullptr;
    auto* sibling = new WindowsTreeGraphItem(View());
    sibling->Init(label, key, 0);
    if (!InsertAfter(sibling)) {
        delete sibling;
        return nullptr;
    }
    QTreeWidgetItem* parentHandle = parent->GetHandle();
    if (parentHandle && m_handle)
        sibling->MakeHandle(parentHandle, parentHandle->indexOfChild(m_handle) + 1, hasChildren);
    return sibling;
}

void WindowsTreeGraphItem::SetHasChildren(bool hasChildren) {
    QTreeWidgetItem* handle = Shown();
    if (handle)
        handle->setChildIndicatorPolicy(hasChildren
                                            ? QTreeWidgetItem::ShowIndicator
                                            : QTreeWidgetItem::DontShowIndicatorWhenChildless);
    if (hasChildren) return;
    TreeGraphChildList& children = GetChildren();
    for (TreeGraphItem* child = children.Rewind(); child; child = children.Advance())
        DeleteChild(child);
}

void WindowsTreeGraphItem::SetBold(bool bold) {
    QTreeWidgetItem* handle = Shown();
    if (!handle || handle->font(0).bold() == bold) return;
    QFont font = handle->font(0);
    font.setBold(bold);
    handle->setFont(0, font);
}

void WindowsTreeGraphItem::SetHighlighted(bool highlighted) {
    QTreeWidgetItem* handle = Shown();
    if (!handle || handle->data(0, kHighlightedRole).toBool() == highlighted) return;
    handle->setData(0, kHighlightedRole, highlighted);
    handle->setData(0, Qt::BackgroundRole,
                    highlighted ? QVariant(QBrush(kHighlightBackground)) : QVariant());
}

void WindowsTreeGraphItem::SetStateImage(int index) {
    QTreeWidgetItem* handle = Shown();
    if (!handle) return;
    index &= 0xF;
    handle->setData(0, kStateImageRole, index);
    handle->setIcon(0, View()->GetTreeControl()->GetStateImage(index));
}

bool WindowsTreeGraphItem::IsExpanded() const {
    if (View()->GetRoot() == this) return true;
    QTreeWidgetItem* handle = Shown();
    return handle && handle->isExpanded();
}

void WindowsTreeGraphItem::SetLabel(const char* label) {
    QTreeWidgetItem* handle = Shown();
    if (handle) handle->setText(0, QString::fromUtf8(label ? label : ""));
    TreeGraphItem::SetLabel(label);
}

void WindowsTreeGraphItem::Expand() {
    ShowExpanded(true);
    TreeGraphItem::Expand();
}

void WindowsTreeGraphItem::Collapse() {
    ShowExpanded(false);
    TreeGraphItem::Collapse();
}

// The model's own expanding is not reported back to it.
void WindowsTreeGraphItem::ShowExpanded(bool expanded) {
    if (QTreeWidgetItem* handle = Shown()) {
        WindowsTreeGraph::Quiet quiet(View());
        handle->setExpanded(expanded);
    }
}

bool WindowsTreeGraphItem::EditLabel() {
    QTreeWidgetItem* handle = Shown();
    return handle && View()->GetTreeControl()->EditLabel(handle);
}
