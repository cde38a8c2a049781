#pragma once

#include <cstddef>

#include "treegraph/tree_graph_chain.h"

// The ordered children of one item, with a cursor for stepping through them. Only the owning
// item adds and removes children; anyone may read the list and move the cursor.
//
// Every removal puts the cursor back on the first child. Code that deletes the current child and
// then advances therefore steps over the child that moved to the front: of two or more children
// deleted that way, the second one survives. Views rely on this when they drop an item's children.
class TreeGraphChildList {
public:
    TreeGraphItem* GetHead() const { return m_chain.GetHead(); }
    TreeGraphItem* GetTail() const { return m_chain.GetTail(); }
    std::size_t GetCount() const { return m_chain.GetCount(); }
    bool IsEmpty() const { return m_chain.GetCount() == 0; }

    // Moves the cursor to the first child and returns it (null when there is none).
    TreeGraphItem* Rewind();
    TreeGraphItem* GetCurrent() const { return m_cursor; }
    // Moves the cursor to the next child and returns it; null once past the last one.
    TreeGraphItem* Advance();

private:
    friend class TreeGraphItem;

    static const TreeGraphChain::Links kSiblings;

    void AddHead(TreeGraphItem* item);
    void AddTail(TreeGraphItem* item);
    void InsertAfter(TreeGraphItem* position, TreeGraphItem* item);
    void Remove(TreeGraphItem* item);

    TreeGraphChain m_chain;
    TreeGraphItem* m_cursor = nullptr;
};
