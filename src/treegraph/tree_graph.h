#pragma once

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

#include "treegraph/tree_graph_chain.h"
#include "treegraph/tree_graph_item.h"
#include "treegraph/tree_graph_message_target.h"

// A tree of labelled, keyed items and the relay of a view's events to one message target.
// The graph owns its root; the target is the client's and is never deleted here.
//
// Items are found by key through an index that holds every item attached with AttachChild (or
// registered by hand) whose key is non-zero; several items may carry the same key.
class TreeGraph : public TreeGraphMessageTarget {
public:
    TreeGraph();
    // Drops the key index first and only then deletes the root, so the items' unregistering on
    // the way out finds nothing to do. A view whose items reach back into the view's own state
    // while they die deletes the root itself (SetRoot(nullptr)) in its destructor.
    virtual ~TreeGraph();

    TreeGraph(const TreeGraph&) = delete;
    TreeGraph& operator=(const TreeGraph&) = delete;

    // Each of these passes the call on to the message target with the same arguments, a null
    // item included: judging an item is the target's business. Without a target it is dropped.
    void OnSelectItem(TreeGraphItem* item) override;
    void OnEndLabelEdit(TreeGraphItem* item, const char* text) override;
    void OnBeginLabelEdit(TreeGraphItem* item, const char* text) override;
    void OnExpandItem(TreeGraphItem* item, bool expanding) override;
    void OnStateIconClick(TreeGraphItem* item) override;

    // A view empties its message list here and appends one UTF-8 line to it in AddMessage.
    virtual void ClearMessages();
    virtual void AddMessage(const char* line);
    virtual TreeGraphItem* GetRoot() const;
    // Deletes the current root with its whole subtree and takes ownership of root (which may be
    // null). Refuses (false, ownership stays with the caller) an item of another graph or one that
    // sits in a child list.
    virtual bool SetRoot(TreeGraphItem* root);
    // Nothing here: a view overrides it to replace the root by a fresh empty item of its own
    // type. A headless client gives a plain graph its root with SetRoot.
    virtual void Reset();

    // Ignores the graph itself, which would relay every call back to itself forever.
    void SetMessageTarget(TreeGraphMessageTarget* target);
    TreeGraphMessageTarget* GetMessageTarget() const { return m_target; }

    // Makes item follow its key in the index from now on (items of other graphs are ignored);
    // AttachChild does this for every child it attaches.
    void RegisterItem(TreeGraphItem* item);
    // Takes item out of the index for good; does nothing once the index is gone.
    void UnregisterItem(TreeGraphItem* item);

    // The first item registered under key, or null.
    TreeGraphItem* FindItem(TreeGraphKey key) const;
    // Every item under key, in the order they were registered.
    std::vector<TreeGraphItem*> FindItems(TreeGraphKey key) const;
    // How many distinct keys the index holds.
    std::size_t GetIndexedKeyCount() const;

private:
    friend class TreeGraphItem;

    using KeyIndex = std::unordered_map<TreeGraphKey, TreeGraphChain>;

    static const TreeGraphChain::Links kSameKey;

    void LinkKey(TreeGraphItem* item);
    void UnlinkKey(TreeGraphItem* item);

    TreeGraphMessageTarget* m_target = nullptr;
    std::unique_ptr<KeyIndex> m_keyIndex;
    std::unique_ptr<TreeGraphItem> m_root;
};
