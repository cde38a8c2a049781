#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <obsidra/hc.h>

#include "hc/content_kind.h"
#include "hc/database.h"

namespace hc {

// What the C interface implies of its caller beside the stored scene: the stack of open
// segments and geometry items (which also scopes paths and local keys), the stack of contents
// searches, the segment, name and open-item searches. The database holds the scene and its
// invariants; a session only reads it, and asks it for every change. Misuse is reported through
// ReportError and answered with nothing.
class Session {
public:
    explicit Session(Database& database) : m_db(database) {}
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Nothing open and no search begun.
    void Reset();
    Database& Db() const { return m_db; }

    // --- Keys, scoped by the current segment (local keys) ----------------------------------------
    Slot Resolve(HC_KEY key) const { return m_db.Resolve(key, CurrentSegment()); }
    Slot Require(HC_KEY key) const { return m_db.Require(key, CurrentSegment()); }

    // --- Open items -----------------------------------------------------------------------------
    Slot CurrentSegment() const; // innermost open segment; "/" when none is open
    // The innermost open item (segment or geometry), which attribute calls work on; "/" when
    // nothing is open, kNoSlot (reported) when it was deleted while open.
    Slot AttributeTarget() const;
    Slot OpenSegment(std::string_view path);
    void OpenSegmentByKey(HC_KEY key);
    void CloseSegment();
    void OpenGeometry(HC_KEY key);
    void CloseGeometry();
    // The open items, innermost first.
    std::vector<Slot> OpenItems() const;

    // --- Paths relative to the current segment
    // ---------------------------------------------------- With create, missing levels are made and
    // "" makes a new nameless child. Reports and returns kNoSlot on a bad path.
    Slot ResolvePath(std::string_view path, bool create) {
        return m_db.ResolvePathFrom(CurrentSegment(), path, create);
    }
    std::vector<Slot> ResolvePattern(std::string_view pattern) {
        return m_db.ResolvePatternFrom(CurrentSegment(), pattern);
    }

    // --- Searches -------------------------------------------------------------------------------
    void BeginContentsSearch(std::string_view scope, std::string_view filter);
    bool FindContents(std::string_view& type, HC_KEY& key);
    // The next item as the database holds it, for callers inside the library.
    bool FindContents(Found& found);
    int ContentsCount() const;
    void EndContentsSearch();

    // Lists the segments a pattern names, fixed when the search begins; segments deleted since
    // are passed over.
    void BeginSegmentSearch(std::string_view pattern);
    // The next segment, or kNoSlot at the end.
    Slot FindSegment();
    int SegmentSearchCount() const;
    void EndSegmentSearch();

    // Lists the names a segment defines, one kind at a time (one search per kind at once).
    void BeginNameSearch(ContentKind kind, std::vector<std::string> names);
    bool FindName(ContentKind kind, std::string& name);
    void EndNameSearch(ContentKind kind);

    void BeginOpenItemSearch();
    bool FindOpenItem(HC_KEY& key, std::string& type);
    void EndOpenItemSearch();

private:
    struct OpenItem {
        Slot slot;
        bool geometry;
    };
    // Each a snapshot taken at begin, of slots checked for life as they are returned.
    struct ContentsSearch {
        std::vector<Found> items;
        size_t next = 0;
    };
    struct SegmentSearch {
        std::vector<Slot> segments;
        size_t next = 0;
    };
    struct NameSearch {
        std::vector<std::string> names;
        size_t next = 0;
    };

    Database& m_db;
    std::vector<OpenItem> m_open;
    std::vector<ContentsSearch> m_searches;
    std::vector<SegmentSearch> m_segmentSearches;
    NameSearch m_nameSearches[kContentKindCount];
    std::vector<Slot> m_openItemSearch;
    size_t m_openItemNext = 0;
};

// The process-wide session of the C interface, over Current().
Session& CurrentSession();

} // namespace hc
