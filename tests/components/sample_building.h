// A small hand-made project whose every group exercises one rule of tree building, and helpers
// to look at a built tree.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include <obsidra/host.h>

#include "components/component_tree.h"

namespace obsidra::components::sample {

// Component handles. kShared names two components: the first in tree order is 1001.
inline constexpr std::uint64_t kWallA = 1001; // F1, attribute 外墙属性1, geometries 11, 12
inline constexpr std::uint64_t kWallB = 1002; // F1, attribute 外墙属性1, geometry 13
inline constexpr std::uint64_t kWallC = 1003; // F2, attribute 外墙属性1, geometry 14, id "none"
inline constexpr std::uint64_t kWallD = 1001; // F1, attribute 外墙属性2, geometry 15
inline constexpr std::uint64_t kRoof = 1005;  // 屋面 (no floor data), geometry 16
inline constexpr std::uint64_t kOrphan = 1006; // 地下室, attribute missing: never in the tree
inline constexpr std::uint64_t kBeam = 1007;   // 结构 / F2, no geometry

// Project "工程A" with floors F1, F2; disciplines 建筑 (墙体: 外墙, 内墙) and 结构 (梁柱: 梁).
// 内墙 has no entry in the component index.
ProjectData MakeProject();

// One line per node, indented two spaces per level: "label [item data]", with " <state>" added
// when states are asked for.
std::string DumpTree(const ComponentTree& tree, bool withStates = false);

// The node reached from the root through these labels, or kNoNode.
NodeIndex FindNode(const ComponentTree& tree, const std::vector<std::string_view>& path);

} // namespace obsidra::components::sample
