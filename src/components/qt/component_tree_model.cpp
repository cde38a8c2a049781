#include "components/qt/component_tree_model.h"

#include <QBrush>
#include <algorithm>
#include <utility>
#include <vector>

namespace obsidra::components::qt {

ComponentTreeModel::ComponentTreeModel(ComponentHost* host, QObject* parent)
    : QAbstractItemModel(parent), m_tree(host) {
    m_tree.AddObserver(this);
}

ComponentTreeModel::~ComponentTreeModel() {
    m_tree.RemoveObserver(this);
}

NodeIndex ComponentTreeModel::NodeOf(const QModelIndex& index) const {
    if (!index.isValid() || index.model() != this) return kNoNode;
    return static_cast<NodeIndex>(index.internalId());
}

QModelIndex ComponentTreeModel::IndexOf(NodeIndex node) const {
    if (!m_tree.IsValid(node) || !m_filter.Keeps(node)) return {};
    return createIndex(ShownRow(node), 0, static_cast<quintptr>(node));
}

void ComponentTreeModel::SetFilter(std::string_view text) {
    beginResetModel();
    m_filter.Apply(m_tree, text);
    endResetModel();
}

std::span<const NodeIndex> ComponentTreeModel::ShownChildren(NodeIndex node) const {
    return m_filter.Active() ? m_filter.Children(node) : m_tree.Children(node);
}

int ComponentTreeModel::ShownRow(NodeIndex node) const {
    return m_filter.Active() ? m_filter.Row(node) : m_tree.Row(node);
}

QModelIndex ComponentTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (column != 0 || row < 0) return {};
    if (!parent.isValid()) return row == 0 ? IndexOf(m_tree.Root()) : QModelIndex();
    const std::span<const NodeIndex> children = ShownChildren(NodeOf(parent));
    if (static_cast<std::size_t>(row) >= children.size()) return {};
    return createIndex(row, 0, static_cast<quintptr>(children[static_cast<std::size_t>(row)]));
}

QModelIndex ComponentTreeModel::parent(const QModelIndex& child) const {
    return IndexOf(m_tree.Parent(NodeOf(child)));
}

int ComponentTreeModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid())
        return m_tree.Root() == kNoNode || !m_filter.Keeps(m_tree.Root()) ? 0 : 1;
    if (parent.column() != 0) return 0;
    return static_cast<int>(ShownChildren(NodeOf(parent)).size());
}

int ComponentTreeModel::columnCount(const QModelIndex& /*parent*/) const {
    return 1;
}

QVariant ComponentTreeModel::data(const QModelIndex& index, int role) const {
    const NodeIndex node = NodeOf(index);
    if (!m_tree.IsValid(node)) return {};
    switch (role) {
    case Qt::DisplayRole:
        return QString::fromStdString(m_tree.Label(node));
    case Qt::CheckStateRole:
        switch (m_tree.GetCheckState(node)) {
        case CheckState::NoBox:
            return {};
        case CheckState::Unchecked:
            return Qt::Unchecked;
        case CheckState::PartlyChecked:
            return Qt::PartiallyChecked;
        case CheckState::Checked:
            return Qt::Checked;
        }
        return {};
    case Qt::ForegroundRole:
        // The selected row keeps the selection's own colours.
        if (m_tree.IsHighlighted(node) && node != m_tree.Selected()) return QBrush(Qt::red);
        return {};
    case kKindRole:
        return static_cast<int>(m_tree.Kind(node));
    default:
        return {};
    }
}

Qt::ItemFlags ComponentTreeModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

// One signal per run of neighbouring siblings: a click on the root changes every box, and a
// signal per node would cost more than the change itself.
void ComponentTreeModel::CheckStatesChanged(std::span<const NodeIndex> nodes) {
    std::vector<std::pair<NodeIndex, int>> places; // (parent, row)
    places.reserve(nodes.size());
    for (const NodeIndex node : nodes)
        if (m_filter.Keeps(node)) places.emplace_back(m_tree.Parent(node), ShownRow(node));
    std::sort(places.begin(), places.end());
    const QList<int> roles{Qt::CheckStateRole};
    for (std::size_t first = 0; first < places.size();) {
        std::size_t last = first;
        while (last + 1 < places.size() && places[last + 1].first == places[first].first &&
               places[last + 1].second == places[last].second + 1)
            ++last;
        const QModelIndex parent = IndexOf(places[first].first);
        emit dataChanged(index(places[first].second, 0, parent),
                         index(places[last].second, 0, parent), roles);
        first = last + 1;
    }
}

void ComponentTreeModel::InformationChanged(std::string_view text) {
    emit InformationTextChanged(
        QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

} // namespace obsidra::components::qt
