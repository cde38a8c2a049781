#include "browser/browser_menus.h"

#include <QMenu>
#include <cstring>

#include "mvo/utility.h"
#include "scenetree/hoops_segment_tree.h"
#include "scenetree/scene_access.h"

namespace obsidra::browser {

namespace {

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
        AddEntries(*menu, obsidra::scenetree::SegmentMenuCommands());
        return menu;
    case kAttributeLineMenu:
        AddEntries(*menu, obsidra::scenetree::AttributeLineCommands());
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
