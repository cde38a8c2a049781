#pragma once

// What each node of the segment tree stands for, kept as data in the node's 64-bit data word so
// that no decision has to read it back from a label. The word is the tree's own: a view leaves it
// alone, and an item the tree did not make reads as NodeKind::None.

#include <cstdint>

#include "treegraph/tree_graph_item.h"

namespace obsidra::scenetree {

enum class NodeKind : std::uint8_t {
    None, // the graph's root, or an item the tree did not make
    Segment,
    StaticTree,       // "STATIC_TREE", keyed by its segment
    GeometryGroup,    // "GEOMETRY"
    GeometryKind,     // one geometry descriptor's items; index: the descriptor's place in its list
    GeometryItem,     // one geometry item, also one listed below a reference
    DefinesGroup,     // "DEFINES"
    DefinitionKind,   // index: the definition descriptor's place in its list
    DefinitionLine,   // index: as its kind's
    AttributeLine,    // index: the attribute's kind
    IncludesGroup,    // "INCLUDES"
    StylesGroup,      // "STYLES"
    NamedStylesGroup, // "NAMED STYLES"
    Include,
    Style,
    NamedStyle,
    ReferencesGroup,   // "REFERENCES", keyed by its segment
    GeometryRefGroup,  // "GEOMETRY_REF"
    SegmentRefGroup,   // "SEGMENT_REF"
    SegmentReference,  // a reference to a segment
    GeometryReference, // a reference to a geometry item
    SegmentPage,       // "SEGMENTS %d-%d"; first and last entry, 1-based
    ReferencePage,     // "REFERENCES %d-%d"
};

// A node's kind and what that kind needs besides: a descriptor index, or a page's range.
struct NodeData {
    NodeKind kind = NodeKind::None;
    std::uint32_t index = 0;
    // Pages only: the 1-based first and last entry.
    std::uint32_t first = 0;
    std::uint32_t last = 0;
};

// The word packs the kind in the top byte. A page keeps its first entry in the low 32 bits and
// its length (at most a page, far below 2^16) above them; others keep their index there.
constexpr std::uint64_t PackNodeData(const NodeData& data) {
    std::uint64_t word = static_cast<std::uint64_t>(data.kind) << 56;
    if (data.kind == NodeKind::SegmentPage || data.kind == NodeKind::ReferencePage)
        return word | data.first |
               (static_cast<std::uint64_t>((data.last - data.first + 1) & 0xFFFFu) << 32);
    return word | data.index;
}

constexpr NodeData UnpackNodeData(std::uint64_t word) {
    NodeData data;
    data.kind = static_cast<NodeKind>(word >> 56);
    auto low = static_cast<std::uint32_t>(word & 0xFFFFFFFFu);
    if (data.kind == NodeKind::SegmentPage || data.kind == NodeKind::ReferencePage) {
        data.first = low;
        data.last = low + static_cast<std::uint32_t>((word >> 32) & 0xFFFFu) - 1;
    } else {
        data.index = low;
    }
    return data;
}

inline NodeData DataOf(const TreeGraphItem* node) {
    return node ? UnpackNodeData(node->GetData()) : NodeData{};
}

inline NodeKind KindOf(const TreeGraphItem* node) {
    return DataOf(node).kind;
}

// STATIC_TREE and REFERENCES carry their segment's key only to find it: they stand for no object.
constexpr bool IsKeyedGroup(NodeKind kind) {
    return kind == NodeKind::StaticTree || kind == NodeKind::ReferencesGroup;
}

// The nodes whose key names a geometry item or a reference: attribute questions about them open
// the item as geometry, not as a segment.
constexpr bool IsItemKind(NodeKind kind) {
    return kind == NodeKind::GeometryItem || kind == NodeKind::SegmentReference ||
           kind == NodeKind::GeometryReference;
}

} // namespace obsidra::scenetree
