// The component viewer's control tree: a tree view over the component tree model. A click on a
// box ticks or unticks its subtree and shows or hides the geometry in the host; Space changes
// only the boxes; the selected node's information goes to the edit box beside the tree.
#pragma once

#include <QPointer>
#include <QTreeView>
#include <cstdint>
#include <functional>
#include <vector>

#include "components/qt/component_tree_model.h"

class QMenu;
class QPlainTextEdit;

namespace obsidra::components::qt {

class CMutiTreeCtrl final : public QTreeView {
    Q_OBJECT

public:
    // The context menu of any node (ours, beyond the template), by commandId.
    static constexpr int kIsolateCommand = 2102;
    static constexpr int kXRayCommand = 2103;
    static constexpr int kShowAllCommand = 2104;
    // Shows a menu and returns the action chosen (null: none); tests replace it.
    using MenuRunner = std::function<QAction*(QMenu&, const QPoint&)>;

    explicit CMutiTreeCtrl(QWidget* parent = nullptr);
    void SetMenuRunner(MenuRunner runner) { m_menuRunner = std::move(runner); }

    // Neither is owned. The box shows the selected node's information text.
    void SetInformationBox(QPlainTextEdit* box);
    void SetHost(ComponentHost* host) { m_model->Tree().SetHost(host); }

    ComponentTree& Tree() { return m_model->Tree(); }
    ComponentTreeModel* Model() const { return m_model; }

    // Where the node's check box is drawn in viewport coordinates; empty when the node has no
    // box or its row is not shown.
    QRect CheckBoxRect(NodeIndex node) const;

    // Shows only the nodes whose label holds the text, with their ancestors, all expanded. The
    // first filter remembers which nodes were expanded; an empty text shows the whole tree with
    // those expanded again and the selected node (the one chosen meanwhile, if any) in view.
    void SetFilterText(const QString& text);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    void ShowInformation(const QString& text);
    void CollectExpanded(const QModelIndex& parent, std::vector<NodeIndex>& nodes) const;

    ComponentTreeModel* m_model;
    QPointer<QPlainTextEdit> m_informationBox;
    std::vector<NodeIndex> m_expandedBeforeFilter;
    MenuRunner m_menuRunner;
};

} // namespace obsidra::components::qt
