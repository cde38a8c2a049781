#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "hc/objects.h"

namespace hc {

// Finds a named segment from its owner and its name (case-insensitive) in O(1). One table for the
// whole database, open addressing with linear probing, eight bytes an entry: a per-segment hash
// map would cost far more at a million children.
class NameIndex {
public:
    // Gives the owner and the name of a slot in the table.
    using Lookup = std::function<std::pair<Slot, std::string_view>(Slot)>;

    explicit NameIndex(Lookup lookup) : m_lookup(std::move(lookup)) {}

    Slot Find(Slot owner, std::string_view name) const;
    void Insert(Slot slot, Slot owner, std::string_view name);
    void Erase(Slot slot, Slot owner, std::string_view name);
    void Clear();
    size_t Size() const { return m_size; }

private:
    struct Entry {
        Slot slot = kNoSlot;
        uint32_t hash = 0;
    };

    static uint32_t Hash(Slot owner, std::string_view name);
    void Grow();

    Lookup m_lookup;
    std::vector<Entry> m_entries;
    size_t m_size = 0;
};

} // namespace hc
