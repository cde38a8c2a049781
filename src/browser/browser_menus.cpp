#include "browser/browser_menus.h"

#include <QMenu>
#include <cstring>

#include "mvo/utility.h"
#include "scenetree/hoops_segment_tree.h"
#include "scenetree/scene_access.h"

namespace obsidra::browser {

namespace {

// The full menu after its two submenus; 0 is a separator.
constexpr MenuEntry kSegmentCommands[] = {
    {5292, "Show Bounding", nullptr},
    {0, nullptr, nullptr},
    {5306, "Optimize", nullptr},
    {0, nullptr, nullptr},
    {5287, "Cut Segment", nullptr},
    {5288, "Paste Segment", nullptr},
    {5268, "Delete Segment", nullptr},
    {5284, "Flush Segment Contents", nullptr},
    {0, nullptr, nullptr},
    {5285, "Create Child Segment", nullptr},
    {5281, "Zoom To Segment", nullptr},
    {5311, "Load Into Segment", nullptr},
    {5286, "Activate Manipulator", nullptr},
    {5299, "Save to HMF", nullptr},
    {5289, "Edit", nullptr},
    {5313, "AddStyle", nullptr},
    {5314, "AddInclude", nullptr},
    {5315, "GotoStyleInclude", nullptr},
};

constexpr MenuEntry kAttributeLineCommands[] = {
    {5261, "Undefine Attribute", nullptr},
    {5289, "Edit", nullptr},
};

constexpr MenuEntry kGeometryItemCommands[] = {
    {5289, "Edit", nullptr},
};

void AddEntries(QMenu& menu, std::span<const MenuEntry> entries) {
    for (const MenuEntry& entry : entries) {
        if (!entry.commandId) {
            menu.addSeparator();
            continue;
        }
        QAction* action = menu.addAction(QString::fromUtf8(entry.text));
        action->setProperty("commandId", entry.commandId);
    }
}

bool LabelIs(const TreeGraphItem* node, const char* label) {
    return node && node->GetLabel() && std::strcmp(node->GetLabel(), label) == 0;
}

} // namespace

std::unique_ptr<QMenu> MakeBrowserMenu(int menuId, QWidget* parent) {
    auto menu = std::make_unique<QMenu>(QStringLiteral("SegmentBrowser"), parent);
    switch (menuId) {
    case kSegmentMenu:
        AddEntries(*menu->addMenu(QStringLiteral("Add Attribute")),
                   obsidra::scenetree::AddAttributeCommands());
        AddEntries(*menu->addMenu(QStringLiteral("Show Net Attribute")),
                   obsidra::scenetree::ShowNetAttributeCommands());
        AddEntries(*menu, kSegmentCommands);
        return menu;
    case kAttributeLineMenu:
        AddEntries(*menu, kAttributeLineCommands);
        return menu;
    case kGeometryItemMenu:
        AddEntries(*menu, kGeometryItemCommands);
        return menu;
    default:
        return nullptr;
    }
}

int ChooseContextMenu(HoopsSegmentTree& tree, const TreeGraphItem* node) {
    using namespace obsidra::scenetree;
    if (!node) return 0;
    if (!IsObjectKey(node->GetKey())) return tree.IsAttributeLine(node) ? kAttributeLineMenu : 0;
    const TreeGraphItem* parent = node->GetParent();
    if (parent && LabelIs(parent->GetParent(), kGeometryLabel)) return kGeometryItemMenu;
    if (!IsAlive(node->GetKey())) return 0;
    if (HUtility::IsSegmentKey(node->GetKey()) || KeyType(node->GetKey()) == "style")
        return kSegmentMenu;
    return 0;
}

} // namespace obsidra::browser
