// The item model a Qt view shows of the component tree: one row per node, made when the view
// asks for it, so that a building of 400,000 nodes costs no more than the rows on screen.
#pragma once

#include <QAbstractItemModel>
#include <span>
#include <string_view>

#include "components/component_filter.h"
#include "components/component_tree.h"

namespace obsidra::components::qt {

class ComponentTreeModel final : public QAbstractItemModel, private ComponentTreeObserver {
    Q_OBJECT

public:
    // The node's kind as a view keeps it for its item (the item data of the tree control).
    static constexpr int kKindRole = Qt::UserRole;

    explicit ComponentTreeModel(ComponentHost* host = nullptr, QObject* parent = nullptr);
    ~ComponentTreeModel() override;

    ComponentTree& Tree() { return m_tree; }
    const ComponentTree& Tree() const { return m_tree; }

    NodeIndex NodeOf(const QModelIndex& index) const;
    // Invalid for a node the filter leaves out.
    QModelIndex IndexOf(NodeIndex node) const;

    // Shows only the nodes whose label holds the text, and their ancestors; an empty text shows
    // every node again. The model is reset either way.
    void SetFilter(std::string_view text);
    const ComponentFilter& Filter() const { return m_filter; }

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    // Never user-checkable: the boxes change only through the tree's own rules, which a view
    // calls on a click or a key, never by Qt flipping one box.
    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    void InformationTextChanged(const QString& text);
    // repaintNow: the view should repaint at once rather than at its next paint.
    void HighlightMarksChanged(bool repaintNow);

private:
    void TreeAboutToReset() override { beginResetModel(); }
    // A new tree drops the filter: its nodes are other nodes.
    void TreeReset() override {
        m_filter.Clear();
        endResetModel();
    }
    std::span<const NodeIndex> ShownChildren(NodeIndex node) const;
    int ShownRow(NodeIndex node) const;
    void CheckStatesChanged(std::span<const NodeIndex> nodes) override;
    void HighlightChanged(bool repaintNow) override { emit HighlightMarksChanged(repaintNow); }
    void InformationChanged(std::string_view text) override;

    ComponentTree m_tree;
    ComponentFilter m_filter;
};

} // namespace obsidra::components::qt
