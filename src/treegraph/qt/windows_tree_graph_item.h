#pragma once

#include "treegraph/tree_graph_item.h"

class QTreeWidgetItem;
class WindowsTreeGraph;

// A tree graph item mirrored by exactly one widget item, whose back pointer leads here. The
// root's widget item is the tree's invisible root, so the root's children are top-level rows.
class WindowsTreeGraphItem : public TreeGraphItem {
public:
    // An item of graph, shown once a parent places it; the graph's root is shown by the tree's
    // invisible root item.
    explicit WindowsTreeGraphItem(WindowsTreeGraph* graph);
    // Deletes the children first, then this item's widget item while the tree still exists.
    ~WindowsTreeGraphItem() override;

    TreeGraphItem* AddChild(const char* label, TreeGraphKey key, bool atEnd) override;
    TreeGraphItem* AddSibling(const char* label, TreeGraphKey key, bool hasChildren) override;
    // false also drops the children, stepping on after each removal as the child list's cursor
    // does: of two or more children the second one stays.
    void SetHasChildren(bool hasChildren) override;
    void SetBold(bool bold) override;
    void SetHighlighted(bool highlighted) override;
    void SetStateImage(int index) override;
    bool IsExpanded() const override;
    void SetLabel(const char* label) override;
    void Expand() override;
    void Collapse() override;
    bool EditLabel() override;

    // Null once the tree is gone; the invisible root for the graph's root.
    QTreeWidgetItem* GetHandle() const;
    // The model item a widget item shows, or null for an item this view did not make.
    static WindowsTreeGraphItem* FromHandle(const QTreeWidgetItem* handle);

private:
    WindowsTreeGraph* View() const;
    // The widget item while the tree exists, else null.
    QTreeWidgetItem* Shown() const;
    void ShowExpanded(bool expanded);
    // Makes the widget item of this new item as the index-th child of parentHandle.
    void MakeHandle(QTreeWidgetItem* parentHandle, int index, bool hasChildren);

    QTreeWidgetItem* m_handle = nullptr;
};
