#pragma once

#include <QListWidget>
#include <QPointer>

#include "treegraph/qt/seg_tree_ctrl.h"
#include "treegraph/tree_graph.h"

class QTreeWidgetItem;
class WindowsTreeGraphItem;

// The tree graph shown on a CSegTreeCtrl, with a list widget for its message lines. The tree's
// events come back here (OnControl...) and go on to the graph's client with the meanings the
// headless graph gives them.
class WindowsTreeGraph : public TreeGraph {
public:
    WindowsTreeGraph(CSegTreeCtrl* tree, QListWidget* messages);
    // Deletes the items, then empties the tree at once.
    ~WindowsTreeGraph() override;

    void ClearMessages() override;
    void AddMessage(const char* line) override;
    void Reset() override;

    CSegTreeCtrl* GetTreeControl() const { return m_tree.data(); }
    QListWidget* GetMessageList() const { return m_messages.data(); }

    // The state image a new item starts with (0: none); a view that knows what its client's
    // items stand for overrides this.
    virtual int StateImageFor(const TreeGraphItem& item) const;

    // What the tree reports. Expanding and collapsing that the model asks for (Expand, Collapse)
    // is not reported back, so a node's children are made once per request of the user.
    void OnControlSelectionChanged(QTreeWidgetItem* current);
    void OnControlExpanding(QTreeWidgetItem* item, bool expanding);
    // Whether the label editor may open: never for a keyless item without a tag (the client does
    // not hear of it), otherwise as the item's editable flag says.
    bool OnControlBeginLabelEdit(QTreeWidgetItem* item);
    // text is the edited label, or null when the edit was cancelled.
    void OnControlEndLabelEdit(QTreeWidgetItem* item, const char* text);
    void OnControlStateIconClick(QTreeWidgetItem* item);

    // While positive, expansion and selection changes of the tree are the view's own doing.
    bool IsQuiet() const { return m_quiet > 0; }

private:
    friend class WindowsTreeGraphItem;
    class Quiet;

    // Replaces the root by newRoot (null when the graph goes).
    void DropAllItems(TreeGraphItem* newRoot);

    QPointer<CSegTreeCtrl> m_tree;
    QPointer<QListWidget> m_messages;
    int m_quiet = 0;
};

// Holds the tree's reports back while the view changes the tree itself.
class WindowsTreeGraph::Quiet {
public:
    explicit Quiet(WindowsTreeGraph* graph) : m_graph(graph) { ++m_graph->m_quiet; }
    ~Quiet() { --m_graph->m_quiet; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    WindowsTreeGraph* m_graph;
};
