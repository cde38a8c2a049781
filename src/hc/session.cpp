#include "hc/session.h"

#include "hc/error.h"
#include "hc/segment_pattern.h"
#include "hc/text.h"

namespace hc {

namespace {

// The innermost search of a stack, or null (reported) when none has been begun.
template <typename Stack>
auto* Innermost(Stack& stack, const char* what) {
    if (stack.empty()) {
        ReportError(std::string("no ") + what + " search has been begun");
        return static_cast<decltype(&stack.back())>(nullptr);
    }
    return &stack.back();
}

} // namespace

void Session::Reset() {
    m_open.clear();
    m_searches.clear();
    m_segmentSearches.clear();
    for (NameSearch& search : m_nameSearches)
        search = {};
    m_openItemSearch.clear();
    m_openItemNext = 0;
}

// --- Open items --------------------------------------------------------------------------------

Slot Session::CurrentSegment() const {
    for (auto it = m_open.rbegin(); it != m_open.rend(); ++it)
        if (!it->geometry) return m_db.GetSegment(it->slot) ? it->slot : kNoSlot;
    return m_db.Root();
}

Slot Session::OpenSegment(std::string_view path) {
    Slot slot = ResolvePath(path, true);
    m_open.push_back({slot, false});
    return slot;
}

void Session::OpenSegmentByKey(HC_KEY key) {
    Slot slot = Require(key);
    if (slot != kNoSlot && !m_db.GetSegment(slot)) {
        ReportError("key " + KeyText(key) + " is not a segment");
        slot = kNoSlot;
    }
    m_open.push_back({slot, false});
}

void Session::CloseSegment() {
    if (m_open.empty() || m_open.back().geometry) {
        ReportError(m_open.empty() ? "no segment is open"
                                   : "a geometry item is open: close it first");
        return;
    }
    m_open.pop_back();
}

void Session::OpenGeometry(HC_KEY key) {
    Slot slot = Require(key);
    if (Object* object = m_db.Get(slot);
        object && object->kind != ObjectKind::Geometry && object->type != ContentKind::Reference) {
        ReportError("key " + KeyText(key) + " is not a geometry item");
        slot = kNoSlot;
    }
    m_open.push_back({slot, true});
}

void Session::CloseGeometry() {
    if (m_open.empty() || !m_open.back().geometry) {
        ReportError("no geometry item is open");
        return;
    }
    m_open.pop_back();
}

std::vector<Slot> Session::OpenItems() const {
    std::vector<Slot> items;
    for (auto it = m_open.rbegin(); it != m_open.rend(); ++it)
        if (m_db.Get(it->slot)) items.push_back(it->slot);
    return items;
}

Slot Session::AttributeTarget() const {
    if (m_open.empty()) return m_db.Root();
    Slot slot = m_open.back().slot;
    if (!m_db.Get(slot)) {
        ReportError("the open item no longer exists");
        return kNoSlot;
    }
    return slot;
}

// --- Contents searches ---------------------------------------------------------------------------

void Session::BeginContentsSearch(std::string_view scope, std::string_view filterText) {
    scope = Trim(scope);
    auto [base, last] = SplitLastLevel(scope);
    bool throughIncludes = last == "....";
    bool subtree = throughIncludes || last == "...";
    std::string_view path = subtree ? (base.empty() ? std::string_view(".") : base) : scope;
    Filter filter = Filter::ParseOrReport(Trim(filterText).empty() ? "everything" : filterText);
    Slot segment = ResolvePath(path.empty() ? "." : path, false);
    m_searches.push_back({m_db.Contents(segment, filter, subtree, throughIncludes), 0});
}

bool Session::FindContents(Found& found) {
    ContentsSearch* search = Innermost(m_searches, "contents");
    if (!search) return false;
    while (search->next < search->items.size()) {
        found = search->items[search->next++];
        if (m_db.Get(found.slot)) return true; // else deleted since the search began
    }
    return false;
}

bool Session::FindContents(std::string_view& type, HC_KEY& key) {
    Found found{};
    if (!FindContents(found)) return false;
    type = TypeWord(found.type);
    key = m_db.KeyOf(found.slot);
    return true;
}

int Session::ContentsCount() const {
    const ContentsSearch* search = Innermost(m_searches, "contents");
    return search ? static_cast<int>(search->items.size()) : 0;
}

void Session::EndContentsSearch() {
    if (Innermost(m_searches, "contents")) m_searches.pop_back();
}

// --- Segment, name and open-item searches
// ----------------------------------------------------------

void Session::BeginSegmentSearch(std::string_view pattern) {
    m_segmentSearches.push_back({ResolvePattern(pattern), 0});
}

Slot Session::FindSegment() {
    SegmentSearch* search = Innermost(m_segmentSearches, "segment");
    while (search && search->next < search->segments.size()) {
        Slot slot = search->segments[search->next++];
        if (m_db.Get(slot)) return slot; // else deleted since the search began
    }
    return kNoSlot;
}

int Session::SegmentSearchCount() const {
    const SegmentSearch* search = Innermost(m_segmentSearches, "segment");
    return search ? static_cast<int>(search->segments.size()) : 0;
}

void Session::EndSegmentSearch() {
    if (Innermost(m_segmentSearches, "segment")) m_segmentSearches.pop_back();
}

void Session::BeginNameSearch(ContentKind kind, std::vector<std::string> names) {
    m_nameSearches[size_t(kind)] = {std::move(names), 0};
}

bool Session::FindName(ContentKind kind, std::string& name) {
    NameSearch& search = m_nameSearches[size_t(kind)];
    if (search.next >= search.names.size()) return false;
    name = search.names[search.next++];
    return true;
}

void Session::EndNameSearch(ContentKind kind) {
    m_nameSearches[size_t(kind)] = {};
}

void Session::BeginOpenItemSearch() {
    m_openItemSearch = OpenItems();
    m_openItemNext = 0;
}

bool Session::FindOpenItem(HC_KEY& key, std::string& type) {
    while (m_openItemNext < m_openItemSearch.size()) {
        Slot slot = m_openItemSearch[m_openItemNext++];
        const Object* object = m_db.Get(slot);
        if (!object) continue;
        key = m_db.KeyOf(slot);
        // An open item is a segment or a geometry item; which kind of geometry is asked of its key.
        type = object->kind == ObjectKind::Segment ? "segment" : "geometry";
        return true;
    }
    return false;
}

void Session::EndOpenItemSearch() {
    m_openItemSearch.clear();
    m_openItemNext = 0;
}

Session& CurrentSession() {
    static Session session(Current());
    return session;
}

} // namespace hc
