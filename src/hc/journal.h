#pragma once

#include <cstdint>
#include <vector>

#include <obsidra/hc_journal.h>

#include "hc/objects.h"

namespace hc {

enum class ChangeKind : uint8_t {
    SegmentCreated = HC_CHANGE_SEGMENT_CREATED,
    Deleted = HC_CHANGE_DELETED,
    Moved = HC_CHANGE_MOVED,
    Attributes = HC_CHANGE_ATTRIBUTES,
    Geometry = HC_CHANGE_GEOMETRY,
    Definitions = HC_CHANGE_DEFINITIONS,
    Links = HC_CHANGE_LINKS,
    Keys = HC_CHANGE_KEYS,
};

// One change as the journal keeps it: slots, turned into original keys when asked for, so that a
// change costs twelve bytes.
struct Change {
    Slot slot;
    Slot segment; // kNoSlot for "/" itself
    ChangeKind kind;
};

// The revision counter and a ring of the latest changes, with the listeners that hear them.
// Recording is an increment and a store: a million-segment build pays nothing else.
class Journal {
public:
    static constexpr size_t kHistory = HC_CHANGE_HISTORY;
    static_assert((kHistory & (kHistory - 1)) == 0, "the ring is indexed by a mask");

    void Record(Change change) {
        if (m_ring.empty()) m_ring.resize(kHistory);
        m_ring[size_t(m_revision) & (kHistory - 1)] = change;
        ++m_revision;
        s_unpublished = true;
    }
    // Set by any journal's change, cleared when the current database's listeners were told: the
    // end of every HC_ call reads this one flag, so that questions pay nothing for the journal.
    static inline bool s_unpublished = false;
    HC_REVISION Revision() const { return m_revision; }
    // Forgets the history: a question about an earlier revision is answered "too old". Without a
    // change since the last restart there is nothing to forget.
    void Restart();

    // As HC_Show_Changes_Since.
    int Since(HC_REVISION since, HC_CHANGE* changes, int capacity) const;

    void AddListener(HC_CHANGE_LISTENER listener, void* user);
    void RemoveListener(HC_CHANGE_LISTENER listener, void* user);
    // Tells the listeners what changed since they were last told.
    void Publish() {
        if (m_published != m_revision) PublishPending();
    }

private:
    struct Listener {
        HC_CHANGE_LISTENER function;
        void* user;
        bool operator==(const Listener&) const = default;
    };

    bool Holds(HC_REVISION since) const {
        return since >= m_floor && since <= m_revision &&
               m_revision - since <= HC_REVISION(kHistory);
    }
    HC_CHANGE At(HC_REVISION revision) const; // revision: 1 for the first change
    void PublishPending();

    std::vector<Change> m_ring; // change r (from 1) at (r - 1) mod kHistory; made at the first
    HC_REVISION m_revision = 0;
    HC_REVISION m_floor = 0;     // the oldest revision whose later changes are all known
    HC_REVISION m_published = 0; // the revision the listeners were last told of
    std::vector<Listener> m_listeners;
};

} // namespace hc
