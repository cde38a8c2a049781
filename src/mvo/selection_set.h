#pragma once

#include <vector>

#include <obsidra/hc.h>

// What the user has selected in a view: keys, each with the include path it was reached through
// (bottom-up: the item, then the includes passed through, innermost first, as
// HUtility::BuildIncludePath makes them). The same key may be selected through different paths.
class HSelectionSet {
public:
    virtual ~HSelectionSet() = default;

    // Selects a key with no path, or with the path of count keys (which starts with key).
    virtual void Select(HC_KEY key, int count = 0, const HC_KEY* path = nullptr);
    virtual void DeSelect(HC_KEY key, int count = 0, const HC_KEY* path = nullptr);
    virtual void DeSelectAll();

    int GetSize() const { return static_cast<int>(m_items.size()); }
    // The key of the i-th selected item, in selection order; -1 past the end.
    HC_KEY GetSelectionItemAt(int index) const;
    // Whether the key is selected, through any path.
    bool IsSelected(HC_KEY key) const;
    // Whether the key is selected through exactly this path.
    bool IsSelected(HC_KEY key, int count, const HC_KEY* path) const;

private:
    struct Item {
        HC_KEY key;
        std::vector<HC_KEY> path;
    };
    static std::vector<HC_KEY> PathOf(HC_KEY key, int count, const HC_KEY* path);

    std::vector<Item> m_items;
};
