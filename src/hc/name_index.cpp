#include "hc/name_index.h"

#include "hc/text.h"

namespace hc {

uint32_t NameIndex::Hash(Slot owner, std::string_view name) {
    // FNV-1a over the owner and the lower-cased name.
    uint64_t h = 14695981039346656037ull;
    auto mix = [&h](unsigned char c) {
        h ^= c;
        h *= 1099511628211ull;
    };
    for (int i = 0; i < 4; ++i)
        mix(static_cast<unsigned char>(owner >> (8 * i)));
    for (char c : name)
        mix(static_cast<unsigned char>((c >= 'A' && c <= 'Z') ? c - 'A' + 'a' : c));
    return static_cast<uint32_t>(h ^ (h >> 32));
}

Slot NameIndex::Find(Slot owner, std::string_view name) const {
    if (m_entries.empty()) return kNoSlot;
    uint32_t hash = Hash(owner, name);
    size_t mask = m_entries.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
        const Entry& e = m_entries[i];
        if (e.slot == kNoSlot) return kNoSlot;
        if (e.hash != hash) continue;
        auto [entryOwner, entryName] = m_lookup(e.slot);
        if (entryOwner == owner && EqualsIgnoreCase(entryName, name)) return e.slot;
    }
}

void NameIndex::Insert(Slot slot, Slot owner, std::string_view name) {
    if ((m_size + 1) * 2 > m_entries.size()) Grow();
    uint32_t hash = Hash(owner, name);
    size_t mask = m_entries.size() - 1;
    size_t i = hash & mask;
    while (m_entries[i].slot != kNoSlot)
        i = (i + 1) & mask;
    m_entries[i] = {slot, hash};
    ++m_size;
}

void NameIndex::Erase(Slot slot, Slot owner, std::string_view name) {
    if (m_entries.empty()) return;
    size_t mask = m_entries.size() - 1;
    size_t i = Hash(owner, name) & mask;
    while (m_entries[i].slot != slot) {
        if (m_entries[i].slot == kNoSlot) return;
        i = (i + 1) & mask;
    }
    // Backward-shift deletion: move later entries of the probe run into the hole, so that no
    // tombstones slow lookups after many deletions.
    size_t hole = i;
    for (size_t j = (hole + 1) & mask; m_entries[j].slot != kNoSlot; j = (j + 1) & mask) {
        size_t home = m_entries[j].hash & mask;
        bool between = hole <= j ? (hole < home && home <= j) : (hole < home || home <= j);
        if (!between) {
            m_entries[hole] = m_entries[j];
            hole = j;
        }
    }
    m_entries[hole] = Entry{};
    --m_size;
}

void NameIndex::Clear() {
    m_entries.clear();
    m_size = 0;
}

void NameIndex::Grow() {
    std::vector<Entry> old = std::move(m_entries);
    m_entries.assign(old.empty() ? 64 : old.size() * 2, Entry{});
    size_t mask = m_entries.size() - 1;
    for (const Entry& e : old) {
        if (e.slot == kNoSlot) continue;
        size_t i = e.hash & mask;
        while (m_entries[i].slot != kNoSlot)
            i = (i + 1) & mask;
        m_entries[i] = e;
    }
}

} // namespace hc
