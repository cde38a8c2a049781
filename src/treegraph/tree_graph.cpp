#include "treegraph/tree_graph.h"

#include <utility>

const TreeGraphChain::Links TreeGraph::kSameKey = &TreeGraphItem::m_keyLinks;

TreeGraph::TreeGraph() : m_keyIndex(std::make_unique<KeyIndex>()) {}

TreeGraph::~TreeGraph() {
    m_keyIndex.reset();
    m_root.reset();
}

void TreeGraph::OnSelectItem(TreeGraphItem* item) {
    if (m_target) m_target->OnSelectItem(item);
}

void TreeGraph::OnEndLabelEdit(TreeGraphItem* item, const char* text) {
    if (m_target) m_target->OnEndLabelEdit(item, text);
}

void TreeGraph::OnBeginLabelEdit(TreeGraphItem* item, const char* text) {
    if (m_target) m_target->OnBeginLabelEdit(item, text);
}

void TreeGraph::OnExpandItem(TreeGraphItem* item, bool expanding) {
    if (m_target) m_target->OnExpandItem(item, expanding);
}

void TreeGraph::OnStateIconClick(TreeGraphItem* item) {
    if (m_target) m_target->OnStateIconClick(item);
}

void TreeGraph::ClearMessages() {}

void TreeGraph::AddMessage(const char*) {}

TreeGraphItem* TreeGraph::GetRoot() const {
    return m_root.get();
}

bool TreeGraph::SetRoot(TreeGraphItem* root) {
    if (root == m_root.get()) return true;
    if (root && (root->m_graph != this || root->IsInParentList())) return false;
    if (root) root->m_parent = nullptr;
    // The new root is in place before the old tree goes, so an item that looks at the graph while
    // it is being deleted never sees a half-deleted root.
    std::unique_ptr<TreeGraphItem> old =
        std::exchange(m_root, std::unique_ptr<TreeGraphItem>(root));
    old.reset();
    return true;
}

void TreeGraph::Reset() {}

void TreeGraph::SetMessageTarget(TreeGraphMessageTarget* target) {
    if (target != this) m_target = target;
}

void TreeGraph::RegisterItem(TreeGraphItem* item) {
    if (!item || item->m_graph != this) return;
    item->m_registered = true;
    LinkKey(item);
}

void TreeGraph::UnregisterItem(TreeGraphItem* item) {
    if (!item || item->m_graph != this) return;
    item->m_registered = false;
    UnlinkKey(item);
}

TreeGraphItem* TreeGraph::FindItem(TreeGraphKey key) const {
    if (!m_keyIndex) return nullptr;
    const auto found = m_keyIndex->find(key);
    return found == m_keyIndex->end() ? nullptr : found->second.GetHead();
}

std::vector<TreeGraphItem*> TreeGraph::FindItems(TreeGraphKey key) const {
    std::vector<TreeGraphItem*> items;
    if (!m_keyIndex) return items;
    const auto found = m_keyIndex->find(key);
    if (found == m_keyIndex->end()) return items;
    items.reserve(found->second.GetCount());
    for (TreeGraphItem* item = found->second.GetHead(); item; item = (item->*kSameKey).next)
        items.push_back(item);
    return items;
}

std::size_t TreeGraph::GetIndexedKeyCount() const {
    return m_keyIndex ? m_keyIndex->size() : 0;
}

void TreeGraph::LinkKey(TreeGraphItem* item) {
    if (!m_keyIndex || item->m_key == 0 || item->m_keyLinks.linked) return;
    (*m_keyIndex)[item->m_key].PushBack(item, kSameKey);
}

// Without an index (the graph is being destroyed) there is nothing to unlink from.
void TreeGraph::UnlinkKey(TreeGraphItem* item) {
    if (!m_keyIndex || !item->m_keyLinks.linked) return;
    const auto found = m_keyIndex->find(item->m_key);
    if (found == m_keyIndex->end()) return;
    found->second.Remove(item, kSameKey);
    if (found->second.GetCount() == 0) m_keyIndex->erase(found);
}
