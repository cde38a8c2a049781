#pragma once

#include <QIcon>
#include <QPoint>
#include <QTreeWidget>
#include <functional>
#include <memory>
#include <vector>

class QMenu;
class TreeGraphItem;
class WindowsTreeGraph;

// The tree widget of a WindowsTreeGraph: it reports expanding, selection, label editing and
// state-icon clicks to its graph, shows state images from its own list, and owns the context
// menus of the right mouse button. What a menu offers and what its commands do is the
// client's: the tree only finds the node under the click and passes the choice on.
class CSegTreeCtrl : public QTreeWidget {
    Q_OBJECT

public:
    // What the right mouse button asks: the node under the click (the selected node on empty
    // space), where the click was on the screen, and the keys held.
    struct ContextRequest {
        TreeGraphItem* node = nullptr;
        QPoint globalPos;
        Qt::KeyboardModifiers modifiers;
    };
    // Returns the menu to show, or null for none (it may act instead, as Ctrl+click fits).
    using MenuProvider = std::function<std::unique_ptr<QMenu>(const ContextRequest&)>;
    // Shows a menu and returns the action chosen (null: none); tests replace it.
    using MenuRunner = std::function<QAction*(QMenu&, const QPoint&)>;
    using CommandHandler = std::function<void(int commandId)>;

    explicit CSegTreeCtrl(QWidget* parent = nullptr);

    void SetGraph(WindowsTreeGraph* graph) { m_graph = graph; }
    WindowsTreeGraph* GetGraph() const { return m_graph; }

    // The pictures of the 4-bit state image index; index 0 shows none.
    void SetStateImageList(std::vector<QIcon> images);
    const QIcon& GetStateImage(int index) const;

    void SetMenuProvider(MenuProvider provider) { m_menuProvider = std::move(provider); }
    void SetMenuRunner(MenuRunner runner) { m_menuRunner = std::move(runner); }
    void SetCommandHandler(CommandHandler handler) { m_commandHandler = std::move(handler); }
    // No menus at all while set (the right button still fits with Ctrl).
    void SetNoMenu(bool noMenu) { m_noMenu = noMenu; }
    bool IsNoMenu() const { return m_noMenu; }

    // The node the last right click was about; the menu commands work on it.
    TreeGraphItem* GetCurrentNode() const { return m_currentNode; }
    // Every command of every menu arrives here, by its id.
    void OnCommand(int commandId);

    // The right button as a click at pos (viewport coordinates) would press it.
    void RightClick(const QPoint& pos, Qt::KeyboardModifiers modifiers);
    // Opens the label editor of item unless the graph refuses it; true when it opened.
    bool EditLabel(QTreeWidgetItem* item);
    // The editor of the label being edited, or null.
    QWidget* GetLabelEditor() const;
    // The item widget of a node whose state icon a click at pos would hit, or null.
    QTreeWidgetItem* StateIconAt(const QPoint& pos);
    // A widget item is going away: nothing may point at it or its node any longer.
    void ForgetItem(const QTreeWidgetItem* handle, const TreeGraphItem* node);
    void ForgetAllItems();

protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void commitData(QWidget* editor) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void EndLabelEdit(QWidget* editor, bool accepted);

    WindowsTreeGraph* m_graph = nullptr;
    std::vector<QIcon> m_stateImages;
    MenuProvider m_menuProvider;
    MenuRunner m_menuRunner;
    CommandHandler m_commandHandler;
    TreeGraphItem* m_currentNode = nullptr;
    QTreeWidgetItem* m_editedItem = nullptr;
    bool m_noMenu = false;
};
