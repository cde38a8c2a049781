#pragma once

class TreeGraphItem;

// What a tree graph reports about its items. The client that fills a graph implements the
// operations it cares about; the others stay empty.
class TreeGraphMessageTarget {
public:
    // The view's selection moved to item.
    virtual void OnSelectItem(TreeGraphItem* item);
    // In-place editing of item's label ended; text is the edited label, or null when the edit was
    // cancelled.
    virtual void OnEndLabelEdit(TreeGraphItem* item, const char* text);
    // In-place editing of item's label is starting; text is the label as the view holds it.
    virtual void OnBeginLabelEdit(TreeGraphItem* item, const char* text);
    // item is about to be expanded (true) or collapsed (false).
    virtual void OnExpandItem(TreeGraphItem* item, bool expanding);
    // The user clicked the state icon left of item's label.
    virtual void OnStateIconClick(TreeGraphItem* item);

protected:
    TreeGraphMessageTarget() = default;
    TreeGraphMessageTarget(const TreeGraphMessageTarget&) = default;
    TreeGraphMessageTarget& operator=(const TreeGraphMessageTarget&) = default;
    // A graph never owns its target, so nothing deletes a target through this interface.
    ~TreeGraphMessageTarget() = default;
};
