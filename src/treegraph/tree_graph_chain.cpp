#include "treegraph/tree_graph_chain.h"

#include "treegraph/tree_graph_item.h"

void TreeGraphChain::PushFront(TreeGraphItem* item, Links links) {
    item->*links = {nullptr, m_head, true};
    if (m_head)
        (m_head->*links).prev = item;
    else
        m_tail = item;
    m_head = item;
    ++m_count;
}

void TreeGraphChain::PushBack(TreeGraphItem* item, Links links) {
    item->*links = {m_tail, nullptr, true};
    if (m_tail)
        (m_tail->*links).next = item;
    else
        m_head = item;
    m_tail = item;
    ++m_count;
}

void TreeGraphChain::InsertAfter(TreeGraphItem* position, TreeGraphItem* item, Links links) {
    TreeGraphItem* next = (position->*links).next;
    if (!next) {
        PushBack(item, links);
        return;
    }
    item->*links = {position, next, true};
    (position->*links).next = item;
    (next->*links).prev = item;
    ++m_count;
}

void TreeGraphChain::Remove(TreeGraphItem* item, Links links) {
    const TreeGraphLinks link = item->*links;
    if (link.prev)
        (link.prev->*links).next = link.next;
    else
        m_head = link.next;
    if (link.next)
        (link.next->*links).prev = link.prev;
    else
        m_tail = link.prev;
    item->*links = {};
    --m_count;
}
