#include "treegraph/tree_graph_child_list.h"

#include "treegraph/tree_graph_item.h"

const TreeGraphChain::Links TreeGraphChildList::kSiblings = &TreeGraphItem::m_siblingLinks;

TreeGraphItem* TreeGraphChildList::Rewind() {
    m_cursor = m_chain.GetHead();
    return m_cursor;
}

TreeGraphItem* TreeGraphChildList::Advance() {
    if (m_cursor) m_cursor = (m_cursor->*kSiblings).next;
    return m_cursor;
}

void TreeGraphChildList::AddHead(TreeGraphItem* item) {
    m_chain.PushFront(item, kSiblings);
}

void TreeGraphChildList::AddTail(TreeGraphItem* item) {
    m_chain.PushBack(item, kSiblings);
}

void TreeGraphChildList::InsertAfter(TreeGraphItem* position, TreeGraphItem* item) {
    m_chain.InsertAfter(position, item, kSiblings);
}

void TreeGraphChildList::Remove(TreeGraphItem* item) {
    m_chain.Remove(item, kSiblings);
    m_cursor = m_chain.GetHead();
}
