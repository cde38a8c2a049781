#include "mvo/selection_set.h"

#include <algorithm>

std::vector<HC_KEY> HSelectionSet::PathOf(HC_KEY key, int count, const HC_KEY* path) {
    if (count <= 0 || !path) return {key};
    return std::vector<HC_KEY>(path, path + count);
}

void HSelectionSet::Select(HC_KEY key, int count, const HC_KEY* path) {
    if (key == 0 || key == -1 || IsSelected(key, count, path)) return;
    m_items.push_back({key, PathOf(key, count, path)});
}

void HSelectionSet::DeSelect(HC_KEY key, int count, const HC_KEY* path) {
    std::vector<HC_KEY> wanted = PathOf(key, count, path);
    std::erase_if(m_items,
                  [&](const Item& item) { return item.key == key && item.path == wanted; });
}

void HSelectionSet::DeSelectAll() {
    m_items.clear();
}

HC_KEY HSelectionSet::GetSelectionItemAt(int index) const {
    return index >= 0 && index < GetSize() ? m_items[static_cast<size_t>(index)].key : -1;
}

bool HSelectionSet::IsSelected(HC_KEY key) const {
    return std::any_of(m_items.begin(), m_items.end(),
                       [key](const Item& item) { return item.key == key; });
}

bool HSelectionSet::IsSelected(HC_KEY key, int count, const HC_KEY* path) const {
    std::vector<HC_KEY> wanted = PathOf(key, count, path);
    return std::any_of(m_items.begin(), m_items.end(),
                       [&](const Item& item) { return item.key == key && item.path == wanted; });
}
