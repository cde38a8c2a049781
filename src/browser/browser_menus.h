#pragma once

#include <memory>
#include <span>

#include "scenetree/segment_commands.h"

class HoopsSegmentTree;
class QMenu;
class QWidget;
class TreeGraphItem;

namespace obsidra::browser {

// The browser tree's context menus, by resource id.
inline constexpr int kSegmentMenu = 1564;
inline constexpr int kAttributeLineMenu = 1237;
inline constexpr int kGeometryItemMenu = 1568;

// One menu item: its command id and its text (an attribute item also names its attribute).
using MenuEntry = obsidra::scenetree::AttributeCommand;

// The popup of a context menu, every action carrying its id in the property "commandId";
// null for an unknown id.
std::unique_ptr<QMenu> MakeBrowserMenu(int menuId, QWidget* parent = nullptr);

// Which menu a node gets (0: none): attribute lines the attribute menu, items two levels below
// "GEOMETRY" the geometry item menu, segments and styles the full menu.
int ChooseContextMenu(HoopsSegmentTree& tree, const TreeGraphItem* node);

} // namespace obsidra::browser
