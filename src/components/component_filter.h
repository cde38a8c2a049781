// What a filter text leaves of the control tree: the nodes whose label holds the text, with
// their ancestors so that each stays reachable. A view shows the kept nodes in tree order and
// expands them all; an empty text keeps everything.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "components/component_tree.h"

namespace obsidra::components {

class ComponentFilter {
public:
    // Labels are compared without regard to the case of Latin letters.
    void Apply(const ComponentTree& tree, std::string_view text);
    void Clear();

    bool Active() const { return m_active; }
    // Everything is kept while no filter is active.
    bool Keeps(NodeIndex node) const;
    bool Matches(NodeIndex node) const;
    std::size_t MatchCount() const { return m_matches; }
    // Only while active: the kept children of a kept node in tree order, and a kept node's
    // place among its parent's kept children.
    std::span<const NodeIndex> Children(NodeIndex node) const;
    int Row(NodeIndex node) const;

private:
    enum : unsigned char { kDropped = 0, kKept = 1, kMatched = 3 };

    bool m_active = false;
    std::size_t m_matches = 0;
    std::vector<unsigned char> m_state;     // by node
    std::vector<std::int32_t> m_firstChild; // by node, into m_children
    std::vector<std::int32_t> m_childCount; // by node
    std::vector<std::int32_t> m_row;        // by node
    std::vector<NodeIndex> m_children;
};

} // namespace obsidra::components
