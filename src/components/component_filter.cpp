#include "components/component_filter.h"

#include <algorithm>

#include "text/text.h"

namespace obsidra::components {

void ComponentFilter::Clear() {
    *this = ComponentFilter();
}

void ComponentFilter::Apply(const ComponentTree& tree, std::string_view text) {
    Clear();
    if (text.empty()) return;
    m_active = true;
    const std::size_t count = tree.NodeCount();
    m_state.assign(count, kDropped);
    const std::string needle = text::ToLower(text);
    std::string label;
    for (NodeIndex node = 0; static_cast<std::size_t>(node) < count; ++node) {
        label = text::ToLower(tree.Label(node));
        if (label.find(needle) == std::string::npos) continue;
        ++m_matches;
        m_state[static_cast<std::size_t>(node)] = kMatched;
        // Ancestors already kept have theirs kept too.
        for (NodeIndex up = tree.Parent(node);
             up != kNoNode && m_state[static_cast<std::size_t>(up)] == kDropped;
             up = tree.Parent(up))
            m_state[static_cast<std::size_t>(up)] = kKept;
    }

    m_firstChild.assign(count, 0);
    m_childCount.assign(count, 0);
    m_row.assign(count, -1);
    for (NodeIndex node = 0; static_cast<std::size_t>(node) < count; ++node) {
        if (!Keeps(node)) continue;
        m_firstChild[static_cast<std::size_t>(node)] = static_cast<std::int32_t>(m_children.size());
        for (const NodeIndex child : tree.Children(node)) {
            if (!Keeps(child)) continue;
            m_row[static_cast<std::size_t>(child)] = m_childCount[static_cast<std::size_t>(node)]++;
            m_children.push_back(child);
        }
    }
    if (tree.Root() != kNoNode) m_row[0] = 0;
}

bool ComponentFilter::Keeps(NodeIndex node) const {
    if (!m_active) return true;
    return node >= 0 && static_cast<std::size_t>(node) < m_state.size() &&
           m_state[static_cast<std::size_t>(node)] != kDropped;
}

bool ComponentFilter::Matches(NodeIndex node) const {
    return m_active && node >= 0 && static_cast<std::size_t>(node) < m_state.size() &&
           m_state[static_cast<std::size_t>(node)] == kMatched;
}

std::span<const NodeIndex> ComponentFilter::Children(NodeIndex node) const {
    if (!m_active || !Keeps(node)) return {};
    const auto at = static_cast<std::size_t>(node);
    return std::span<const NodeIndex>(m_children)
        .subspan(static_cast<std::size_t>(m_firstChild[at]),
                 static_cast<std::size_t>(m_childCount[at]));
}

int ComponentFilter::Row(NodeIndex node) const {
    return m_active && Keeps(node) ? m_row[static_cast<std::size_t>(node)] : -1;
}

} // namespace obsidra::components
