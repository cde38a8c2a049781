// Node kinds of the component tree and the check-box states of its nodes.
#pragma once

#include <cstdint>

namespace obsidra::components {

// The value of each kind is the item data a tree view keeps for the node; 4 and 7 are unused.
enum class NodeKind : std::int32_t {
    None = 0,
    Root = 1,
    Project = 2,
    Discipline = 3,
    MajorCategory = 5,
    MinorCategory = 6,
    Floor = 8,
    Attribute = 9,
    Component = 10,
    Geometry = 11,
};

// The value of each state is the index of its picture in the view's state-image strip.
enum class CheckState : std::uint8_t {
    NoBox = 0,
    Unchecked = 1,
    PartlyChecked = 2,
    Checked = 3,
};

} // namespace obsidra::components
