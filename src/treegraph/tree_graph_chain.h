#pragma once

#include <cstddef>

class TreeGraphItem;

// One item's place in one chain. An item carries one pair for its parent's child list and one
// for the graph's key index.
struct TreeGraphLinks {
    TreeGraphItem* prev = nullptr;
    TreeGraphItem* next = nullptr;
    bool linked = false;
};

// A doubly linked list threaded through the items themselves: linking, unlinking and stepping are
// constant time and allocate nothing, which keeps trees of hundreds of thousands of items cheap.
// `links` chooses which pair of an item's links the chain uses. Callers guarantee that an item
// pushed is in no chain of that kind and that an item removed or used as a position is in this
// one.
class TreeGraphChain {
public:
    using Links = TreeGraphLinks TreeGraphItem::*;

    TreeGraphItem* GetHead() const { return m_head; }
    TreeGraphItem* GetTail() const { return m_tail; }
    std::size_t GetCount() const { return m_count; }

    void PushFront(TreeGraphItem* item, Links links);
    void PushBack(TreeGraphItem* item, Links links);
    void InsertAfter(TreeGraphItem* position, TreeGraphItem* item, Links links);
    void Remove(TreeGraphItem* item, Links links);

private:
    TreeGraphItem* m_head = nullptr;
    TreeGraphItem* m_tail = nullptr;
    std::size_t m_count = 0;
};
