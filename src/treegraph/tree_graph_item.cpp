#include "treegraph/tree_graph_item.h"

#include <cstring>

#include "treegraph/tree_graph.h"

namespace {

std::unique_ptr<char[]> CopyText(const char* text) {
    if (!text) return nullptr;
    const std::size_t size = std::strlen(text) + 1;
    auto copy = std::make_unique_for_overwrite<char[]>(size);
    std::memcpy(copy.get(), text, size);
    return copy;
}

} // namespace

TreeGraphItem::TreeGraphItem(TreeGraph* graph) : m_graph(graph) {}

TreeGraphItem::~TreeGraphItem() {
    if (IsInParentList())
        m_parent->m_children.Remove(this);
    else if (m_graph && m_graph->m_root.get() == this)
        m_graph->m_root.release();
    TreeGraphItem::DeleteContents();
}

void TreeGraphItem::DeleteContents() {
    // Only leaves are deleted, walking down to them and back up again, so the stack stays flat
    // however deep the subtree is. The order is that of deleting each child recursively: front
    // child first, every item after its own descendants.
    TreeGraphItem* node = this;
    for (;;) {
        if (TreeGraphItem* first = node->m_children.GetHead()) {
            node = first;
            continue;
        }
        if (node == this) break;
        TreeGraphItem* parent = node->m_parent;
        parent->m_children.Remove(node);
        delete node;
        node = parent;
    }
    m_label.reset();
    m_tag.reset();
    if (m_graph) m_graph->UnregisterItem(this);
}

TreeGraphItem* TreeGraphItem::GetNextSibling() const {
    return IsInParentList() ? m_siblingLinks.next : nullptr;
}

TreeGraphItem* TreeGraphItem::GetLastChild() const {
    return m_children.GetTail();
}

TreeGraphItem* TreeGraphItem::AddChild(const char* label, TreeGraphKey key, bool atEnd) {
    auto child = std::make_unique<TreeGraphItem>(m_graph);
    child->Init(label, key, 0);
    if (!AttachChild(child.get(), atEnd)) return nullptr;
    return child.release();
}

bool TreeGraphItem::AttachChild(TreeGraphItem* child, bool atEnd) {
    if (!CanAdopt(child)) return false;
    child->m_parent = this;
    if (atEnd)
        m_children.AddTail(child);
    else
        m_children.AddHead(child);
    if (m_graph) m_graph->RegisterItem(child);
    return true;
}

TreeGraphItem* TreeGraphItem::AddSibling(const char* label, TreeGraphKey key, bool) {
    if (!IsInParentList()) return nullptr;
    auto sibling = std::make_unique<TreeGraphItem>(m_graph);
    sibling->Init(label, key, 0);
    if (!InsertAfter(sibling.get())) return nullptr;
    return sibling.release();
}

bool TreeGraphItem::InsertAfter(TreeGraphItem* item) {
    if (!IsInParentList() || !m_parent->CanAdopt(item)) return false;
    item->m_parent = m_parent;
    m_parent->m_children.InsertAfter(this, item);
    return true;
}

void TreeGraphItem::DeleteChild(TreeGraphItem* child) {
    if (!child || child->m_parent != this || !child->IsInParentList()) return;
    m_children.Remove(child);
    delete child;
}

void TreeGraphItem::Init(const char* label, TreeGraphKey key, std::uint64_t data) {
    m_label = CopyText(label);
    SetKey(key);
    m_data = data;
}

void TreeGraphItem::SetHasChildren(bool) {}

void TreeGraphItem::SetBold(bool) {}

void TreeGraphItem::SetHighlighted(bool) {}

void TreeGraphItem::SetStateImage(int) {}

bool TreeGraphItem::IsExpanded() const {
    return false;
}

void TreeGraphItem::SetLabel(const char* label) {
    m_label = CopyText(label);
}

void TreeGraphItem::SetTag(const char* tag) {
    m_tag = CopyText(tag);
}

void TreeGraphItem::Expand() {
    m_expandedMark = true;
}

void TreeGraphItem::Collapse() {
    m_expandedMark = false;
}

bool TreeGraphItem::EditLabel() {
    return false;
}

void TreeGraphItem::SetKey(TreeGraphKey key) {
    if (key == m_key) return;
    if (m_graph) m_graph->UnlinkKey(this);
    m_key = key;
    if (m_graph && m_registered) m_graph->LinkKey(this);
}

bool TreeGraphItem::CanAdopt(const TreeGraphItem* item) const {
    if (!item || item == this || item->IsInParentList() || item->m_graph != m_graph) return false;
    if (m_graph && m_graph->m_root.get() == item) return false;
    // Only an item with children can be an ancestor, so adopting a fresh item costs no walk.
    if (!item->m_children.IsEmpty()) {
        for (const TreeGraphItem* node = this; node->IsInParentList(); node = node->m_parent) {
            if (node->m_parent == item) return false;
        }
    }
    return true;
}
