#pragma once

#include <cstdint>
#include <memory>

#include "treegraph/tree_graph_chain.h"
#include "treegraph/tree_graph_child_list.h"

class TreeGraph;

// The scene's key type. 0 means "no key": only items with another key are found by key.
using TreeGraphKey = std::int64_t;

// One node of a tree graph. An item owns its children; the graph owns the root. Labels and tags
// are UTF-8 and may be null.
//
// The presentation operations (SetHasChildren to EditLabel) do nothing visible here: a view
// derives from this class and mirrors each item on a widget. Such a view overrides AddChild and
// AddSibling to create its own item type and then calls AttachChild or InsertAfter.
class TreeGraphItem {
public:
    explicit TreeGraphItem(TreeGraph* graph);
    // Deletes the subtree and leaves the key index; an item deleted directly is first taken out
    // of its parent's list (or out of the graph, for the root).
    virtual ~TreeGraphItem();

    TreeGraphItem(const TreeGraphItem&) = delete;
    TreeGraphItem& operator=(const TreeGraphItem&) = delete;

    // Deletes every child, front first and each one's descendants before it, then frees label and
    // tag and takes this item out of the key index. Safe to run more than once.
    virtual void DeleteContents();
    // The item after this one in its parent's list; null for the last child and for an item that
    // is in no list.
    virtual TreeGraphItem* GetNextSibling() const;
    virtual TreeGraphItem* GetLastChild() const;
    // Creates a child with Init(label, key, 0) and attaches it at the end or at the front.
    virtual TreeGraphItem* AddChild(const char* label, TreeGraphKey key, bool atEnd);
    // Takes ownership of child and puts it at the end or at the front; from then on the child is
    // found by its key whenever the key is non-zero. Refuses (false, ownership stays with the
    // caller) null, this item, an item already in a list, a root, an item of another graph and
    // an ancestor of this item.
    virtual bool AttachChild(TreeGraphItem* child, bool atEnd);
    // Creates an item with Init(label, key, 0) directly after this one; null when this item is in
    // no list (the root). hasChildren only matters to views.
    virtual TreeGraphItem* AddSibling(const char* label, TreeGraphKey key, bool hasChildren);
    // Takes ownership of item and places it directly after this one, refusing what AttachChild
    // refuses and failing when this item is in no list. Such an item stays out of the key index
    // unless the client registers it.
    virtual bool InsertAfter(TreeGraphItem* item);
    // Removes child from this item's list and deletes it; does nothing when child is not one of
    // this item's children.
    virtual void DeleteChild(TreeGraphItem* child);
    // Sets label, key and data of a new item. Does not go through SetLabel, so a view can call it
    // before its widget item exists.
    virtual void Init(const char* label, TreeGraphKey key, std::uint64_t data);
    virtual void SetHasChildren(bool hasChildren);
    virtual void SetBold(bool bold);
    virtual void SetHighlighted(bool highlighted);
    virtual void SetStateImage(int index);
    // Whether the view shows the item expanded; without a view nothing is. The model's own mark
    // is GetExpandedMark.
    virtual bool IsExpanded() const;
    virtual void SetLabel(const char* label);
    virtual void SetTag(const char* tag);
    virtual void Expand();
    virtual void Collapse();
    // Starts in-place editing of the label; true when an editor opened.
    virtual bool EditLabel();

    TreeGraph* GetGraph() const { return m_graph; }
    // Null for the root and for an item not yet placed.
    TreeGraphItem* GetParent() const { return m_parent; }
    bool IsInParentList() const { return m_siblingLinks.linked; }
    TreeGraphChildList& GetChildren() { return m_children; }
    const TreeGraphChildList& GetChildren() const { return m_children; }
    TreeGraphItem* GetFirstChild() const { return m_children.GetHead(); }
    std::size_t GetChildCount() const { return m_children.GetCount(); }

    const char* GetLabel() const { return m_label.get(); }
    const char* GetTag() const { return m_tag.get(); }
    TreeGraphKey GetKey() const { return m_key; }
    // Re-keys the item; an item in the key index moves to its new key (or leaves it for 0).
    void SetKey(TreeGraphKey key);
    std::uint64_t GetData() const { return m_data; }
    void SetData(std::uint64_t data) { m_data = data; }

    // Set by Expand and cleared by Collapse; a client clears it itself when it handles a collapse.
    bool GetExpandedMark() const { return m_expandedMark; }
    void SetExpandedMark(bool expanded) { m_expandedMark = expanded; }
    // A view refuses in-place editing of a label that is not editable.
    bool IsEditable() const { return m_editable; }
    void SetEditable(bool editable) { m_editable = editable; }
    // Two words kept for the client: the segment tree stores its node flags and selection class.
    std::uint32_t GetFlags() const { return m_flags; }
    void SetFlags(std::uint32_t flags) { m_flags = flags; }
    std::int32_t GetSelectionClass() const { return m_selectionClass; }
    void SetSelectionClass(std::int32_t selectionClass) { m_selectionClass = selectionClass; }

private:
    friend class TreeGraph;
    friend class TreeGraphChildList;

    bool CanAdopt(const TreeGraphItem* item) const;

    TreeGraphItem* m_parent = nullptr;
    TreeGraph* m_graph = nullptr;
    TreeGraphChildList m_children;
    TreeGraphLinks m_siblingLinks;
    TreeGraphLinks m_keyLinks;
    std::unique_ptr<char[]> m_label;
    std::unique_ptr<char[]> m_tag;
    TreeGraphKey m_key = 0;
    std::uint64_t m_data = 0;
    std::uint32_t m_flags = 0;
    std::int32_t m_selectionClass = 0;
    bool m_expandedMark = false;
    bool m_editable = true;
    // Whether the item follows its key in the index (set by RegisterItem, cleared by
    // UnregisterItem); it is linked there only while its key is non-zero as well.
    bool m_registered = false;
};
