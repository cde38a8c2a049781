#include "hc/journal.h"

#include <algorithm>

#include "hc/error.h"

namespace hc {

void Journal::Restart() {
    if (m_revision == m_floor) return;
    // The reset itself counts, so that a caller who saw the revision before it learns of it.
    ++m_revision;
    m_floor = m_revision;
    s_unpublished = true;
}

HC_CHANGE Journal::At(HC_REVISION revision) const {
    const Change& change = m_ring[size_t(revision - 1) & (kHistory - 1)];
    return {revision, OriginalKey(change.slot),
            change.segment == kNoSlot ? 0 : OriginalKey(change.segment),
            static_cast<HC_CHANGE_KIND>(change.kind)};
}

int Journal::Since(HC_REVISION since, HC_CHANGE* changes, int capacity) const {
    if (since > m_revision) {
        ReportError("revision " + std::to_string(since) + " has not been reached");
        return -1;
    }
    if (!Holds(since)) return -1;
    if (capacity < 0 || (capacity > 0 && !changes)) {
        ReportError("the changes need room for " + std::to_string(capacity) + " entries");
        return -1;
    }
    const int count = int(m_revision - since);
    for (int i = 0; i < std::min(count, capacity); ++i)
        changes[i] = At(since + 1 + i);
    return count;
}

void Journal::AddListener(HC_CHANGE_LISTENER function, void* user) {
    if (!function) {
        ReportError("a listener must be a function");
        return;
    }
    // A new listener hears what comes after it, not what its caller has seen already.
    Publish();
    if (std::find(m_listeners.begin(), m_listeners.end(), Listener{function, user}) ==
        m_listeners.end())
        m_listeners.push_back({function, user});
}

void Journal::RemoveListener(HC_CHANGE_LISTENER function, void* user) {
    std::erase(m_listeners, Listener{function, user});
}

void Journal::PublishPending() {
    const HC_REVISION from = m_published;
    m_published = m_revision;
    if (m_listeners.empty()) return;
    std::vector<HC_CHANGE> changes;
    if (Holds(from)) {
        changes.reserve(size_t(m_revision - from));
        for (HC_REVISION r = from + 1; r <= m_revision; ++r)
            changes.push_back(At(r));
    }
    const int count = changes.empty() ? -1 : int(changes.size());
    // A listener may define or undefine listeners, or change the scene (which is published
    // after it returns): it is told from copies, and one undefined meanwhile is not told.
    const std::vector<Listener> listeners = m_listeners;
    for (const Listener& listener : listeners)
        if (std::find(m_listeners.begin(), m_listeners.end(), listener) != m_listeners.end())
            listener.function(changes.empty() ? nullptr : changes.data(), count, listener.user);
}

} // namespace hc
