// The searches over the segment tree: a walk down subsegments and includes from a node's
// segment, a test per item by kind, then every hit revealed in the tree (or deleted).

#include <array>
#include <cstdlib>

#include <obsidra/hc_undo.h>

#include "scenetree/database_lists.h"
#include "scenetree/hoops_segment_tree.h"
#include "scenetree/scene_access.h"

using namespace obsidra::scenetree;

namespace {

// The longest path of segments and includes a search follows; deeper branches are cut.
constexpr int kMaxDepth = 256;
// The most segments one search opens. Includes that close a cycle with more than one way round
// give paths that double at every turn up to the depth limit; past this many steps the search
// ends with what it found, as at the depth limit. A scene of a million segments, each passed
// once, stays inside it.
constexpr long kMaxSteps = 1L << 21;
constexpr size_t kMaxText = HC_TEXT_MAX - 1;
constexpr size_t kMaxAttributeName = 31;

constexpr char kDepthMessage[] =
    "Maximum search depth reached.  Some search results may be omitted.";

bool Contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::string ReplaceAll(std::string text, std::string_view find, std::string_view with) {
    if (find.empty()) return text;
    for (size_t at = text.find(find); at != std::string::npos;
         at = text.find(find, at + with.size()))
        text.replace(at, find.size(), with);
    return text;
}

// How the definitions of each sort are listed, by a word of their contents type.
struct DefinitionSearch {
    std::string_view typeWord;
    void (*begin)();
    bool (*find)(char*);
    void (*end)();
};

constexpr DefinitionSearch kDefinitionSearches[] = {
    {"texture", HC_Begin_Texture_Search, HC_Find_Texture, HC_End_Texture_Search},
    {"glyph", HC_Begin_Glyph_Search, HC_Find_Glyph, HC_End_Glyph_Search},
    {"line style", HC_Begin_Line_Style_Search, HC_Find_Line_Style, HC_End_Line_Style_Search},
    {"named style", HC_Begin_Named_Style_Search, HC_Find_Named_Style, HC_End_Named_Style_Search},
};

// The definitions of one sort in the open segment, by name.
std::vector<std::string> DefinitionNames(std::string_view type) {
    std::vector<std::string> names;
    for (const DefinitionSearch& search : kDefinitionSearches) {
        if (!Contains(type, search.typeWord)) continue;
        char name[HC_TEXT_MAX];
        search.begin();
        while (search.find(name))
            names.emplace_back(name);
        search.end();
        break;
    }
    return names;
}

std::vector<HC_KEY> ReferenceKeys(HC_KEY item) {
    int count = 0;
    HC_Show_Reference_Keys_Count(item, &count);
    std::vector<HC_KEY> keys(static_cast<size_t>(count > 0 ? count : 0));
    if (count > 0) HC_Show_Reference_Keys(item, &count, keys.data());
    return keys;
}

// What a search looks for: the find text, and for the key search the key it names.
struct Query {
    std::string find;
    HC_KEY findKey = 0;
};

// One item a contents search listed: its type, for an include the segment it brings in, and
// for a segment its own name ("" for a nameless one).
struct Candidate {
    std::string_view typeWord;
    ObjectType type;
    HC_KEY item;
    HC_KEY target;
    std::string_view name;
};

bool SegmentHit(const Query& query, const Candidate& c) {
    if (c.type != ObjectType::Segment) return false;
    return c.name.empty() ? Contains(SegmentOwnName(c.item), query.find)
                          : Contains(c.name, query.find);
}

bool IncludeHit(const Query& query, const Candidate& c) {
    return c.type == ObjectType::Include && IsAlive(c.target) &&
           Contains(SegmentPath(c.target), query.find);
}

bool GeometryHit(const Query& query, const Candidate& c) {
    return c.type == ObjectType::Geometry && Contains(c.typeWord, query.find);
}

bool StyleHit(const Query& query, const Candidate& c) {
    if (c.type != ObjectType::Style) return false;
    HC_KEY source = HC_Show_Style_Segment(c.item, nullptr);
    return IsAlive(source) && Contains(SegmentPath(source), query.find);
}

bool NamedStyleHit(const Query& query, const Candidate& c) {
    if (c.type != ObjectType::NamedStyle) return false;
    char name[HC_TEXT_MAX] = "";
    HC_Show_Named_Style_Segment(c.item, name);
    return Contains(name, query.find);
}

// A reference to a segment matches by the segment's pathname, one to geometry by its type.
bool ReferenceHit(const Query& query, const Candidate& c, bool toSegment) {
    if (c.type != ObjectType::Reference) return false;
    HC_KEY referee = HC_Show_Reference_Geometry(c.item);
    if (!IsAlive(referee)) return false;
    std::string refereeType = KeyType(referee);
    if ((ObjectTypeOfWord(refereeType) == ObjectType::Segment) != toSegment) return false;
    return Contains(toSegment ? SegmentPath(referee) : refereeType, query.find);
}

bool DefinitionHit(const Query& query, const Candidate& c) {
    for (const std::string& name : DefinitionNames(c.typeWord))
        if (Contains(name, query.find)) return true;
    return false;
}

// The item itself, or a geometry item or reference that refers to the key.
bool KeyHit(const Query& query, const Candidate& c) {
    if (!IsObjectKey(query.findKey) || c.type == ObjectType::Definition) return false;
    if (c.item == query.findKey || HC_Show_Original_Key(c.item) == query.findKey) return true;
    if (c.type != ObjectType::Reference && c.type != ObjectType::Geometry) return false;
    for (HC_KEY referenced : ReferenceKeys(c.item))
        if (referenced == query.findKey) return true;
    return false;
}

// What a leaf segment (one without subsegments or links) must hold for a step into it to find
// anything; a leaf holding none of it is not opened at all.
enum LeafHolds : unsigned {
    kLeafAnything = 1, // attributes are looked at in every segment
    kLeafGeometry = 2,
    kLeafDefinitions = 4,
    kLeafStaticModel = 8,
    kLeafNothing = 0,
};

// Everything that tells one search kind from another, one row per kind in the enum's order.
struct SearchKindRow {
    SearchKind kind;
    const char* filter; // what each step's contents search lists
    bool mayDelete;     // whether "$$delete" deletes the hits
    unsigned leafHolds;
    bool (*isHit)(const Query&, const Candidate&);
};

constexpr SearchKindRow kSearchKinds[] = {
    {SearchKind::Attribute, "segments, includes", false, kLeafAnything,
     [](const Query&, const Candidate&) { return false; }},
    {SearchKind::Geometry, "segments, includes, geometry", true, kLeafGeometry, GeometryHit},
    {SearchKind::Segment, "segments, includes", true, kLeafNothing, SegmentHit},
    {SearchKind::Include, "segments, includes", true, kLeafNothing, IncludeHit},
    {SearchKind::Style, "segments, includes, styles", true, kLeafNothing, StyleHit},
    {SearchKind::SegmentReference, "segments, includes, reference", true, kLeafNothing,
     [](const Query& query, const Candidate& c) { return ReferenceHit(query, c, true); }},
    {SearchKind::GeometryReference, "segments, includes, reference", true, kLeafNothing,
     [](const Query& query, const Candidate& c) { return ReferenceHit(query, c, false); }},
    {SearchKind::Definition,
     "segments, includes, texture definition, glyph definition, line style definition, "
     "named style definition",
     false, kLeafDefinitions, DefinitionHit},
    {SearchKind::Key, "everything, static model, no attributes", false,
     kLeafGeometry | kLeafDefinitions | kLeafStaticModel, KeyHit},
    {SearchKind::NamedStyle, "segments, includes, named styles", true, kLeafNothing, NamedStyleHit},
};

constexpr bool RowsInEnumOrder() {
    int expected = static_cast<int>(SearchKind::Attribute);
    for (const SearchKindRow& row : kSearchKinds)
        if (static_cast<int>(row.kind) != expected++) return false;
    return true;
}
static_assert(RowsInEnumOrder(), "one row per search kind, in the enum's order");

const SearchKindRow& RowOf(SearchKind kind) {
    return kSearchKinds[static_cast<size_t>(kind) - static_cast<size_t>(SearchKind::Attribute)];
}

// holds: what the segment holds, as HC_Fast_Segment_Holds tells it.
bool MayHoldHits(const SearchKindRow& row, unsigned holds) {
    if (row.leafHolds & kLeafAnything) return true;
    return (holds & (HC_HOLDS_SUBSEGMENTS | HC_HOLDS_LINKS)) ||
           ((row.leafHolds & kLeafGeometry) && (holds & HC_HOLDS_GEOMETRY)) ||
           ((row.leafHolds & kLeafDefinitions) && (holds & HC_HOLDS_DEFINITIONS)) ||
           ((row.leafHolds & kLeafStaticModel) && (holds & HC_HOLDS_STATIC_MODEL));
}

} // namespace

struct HoopsSegmentTree::SearchRun {
    const SearchKindRow* row = nullptr;
    Query query;
    std::string second;
    std::array<HC_KEY, kMaxDepth> path{};
    std::vector<SearchResult> results;
    long steps = 0;
};

int HoopsSegmentTree::SearchAttributes(const char* text, TreeGraphItem* start) {
    return Search(SearchKind::Attribute, text ? text : "", start);
}
int HoopsSegmentTree::SearchGeometry(const char* text, TreeGraphItem* start) {
    return Search(SearchKind::Geometry, text ? text : "", start);
}
int HoopsSegmentTree::SearchSegments(const char* text, TreeGraphItem* start) {
    return Search(SearchKind::Segment, text ? text : "", start);
}
int HoopsSegmentTree::SearchIncludes(const char* text, TreeGraphItem* start) {
    return Search(SearchKind::Include, text ? text : "", start);
}
int HoopsSegmentTree::SearchStyles(const char* text, TreeGraphItem* start) {
    return Search(SearchKind::Style, text ? text : "", start);
}
int HoopsSegmentTree::SearchSegmentReferences(const char* text, TreeGraphItem* start) {
    return Search(SearchKind::SegmentReference, text ? text : "", start);
}
int HoopsSegmentTree::SearchGeometryReferences(const char* text, TreeGraphItem* start) {
    return Search(SearchKind::GeometryReference, text ? text : "", start);
}
int HoopsSegmentTree::SearchDefinitions(const char* text, TreeGraphItem* start) {
    return Search(SearchKind::Definition, text ? text : "", start);
}
int HoopsSegmentTree::SearchKey(HC_KEY key, TreeGraphItem* start) {
    return Search(SearchKind::Key, KeyText(key), start);
}

bool HoopsSegmentTree::FindAndSelectByKeyText(const char* keyText, TreeGraphItem* start) {
    if (!keyText || !*keyText) return false;
    char* end = nullptr;
    unsigned long long value = std::strtoull(keyText, &end, 16);
    if (*end) return false;
    return SearchKey(static_cast<HC_KEY>(value), start) > 0 && !m_revealed.empty();
}

int HoopsSegmentTree::Search(SearchKind kind, std::string_view text, TreeGraphItem* start) {
    m_results.clear();
    m_revealed.clear();
    if (!start || start == m_graph->GetRoot()) start = m_topNode;
    if (!start || !IsAlive(start->GetKey()) || ObjectTypeOf(start->GetKey()) != ObjectType::Segment)
        return 0;

    SearchRun run;
    run.row = &RowOf(kind);
    Query& query = run.query;
    size_t separator = text.find("$$");
    query.find = std::string(text.substr(0, separator)).substr(0, kMaxText);
    if (separator != std::string_view::npos)
        run.second = std::string(text.substr(separator + 2)).substr(0, kMaxText);
    if (kind == SearchKind::Key) {
        char* end = nullptr;
        query.findKey = static_cast<HC_KEY>(std::strtoull(query.find.c_str(), &end, 16));
        if (*end || query.find.empty()) query.findKey = 0;
        if (IsAlive(query.findKey)) query.findKey = HC_Show_Original_Key(query.findKey);
    }

    // A search that replaces, unsets or deletes is one step of undo.
    const char* stepName = run.second == "delete"  ? "Delete Found"
                           : run.second == "unset" ? "Unset Found"
                                                   : "Replace";
    if (separator != std::string_view::npos) HC_Begin_Undo_Step(stepName);
    bool complete = SearchStep(run, start->GetKey(), 0);
    if (!complete && m_notifier) m_notifier->ShowMessage(kDepthMessage);

    bool deleting = run.row->mayDelete && run.second == "delete";
    for (const SearchResult& result : run.results) {
        HC_KEY hit = result.keys.back();
        if (deleting) {
            if (IsAlive(hit)) HC_Delete_By_Key(hit);
        } else if (TreeGraphItem* node = Reveal(result, start)) {
            node->SetHighlighted(true);
            m_revealed.push_back(node);
        }
    }
    if (separator != std::string_view::npos) HC_End_Undo_Step();
    m_results = std::move(run.results);
    return static_cast<int>(m_results.size());
}

// Hits below an item are found before the item itself; the start segment is never a hit but
// for its attributes.
bool HoopsSegmentTree::SearchStep(SearchRun& run, HC_KEY segment, int depth) {
    run.path[static_cast<size_t>(depth)] = segment;
    ++depth;
    if (depth >= kMaxDepth || ++run.steps > kMaxSteps) return false;
    SegmentScope open(segment);
    if (run.row->kind == SearchKind::Attribute) SearchSegmentAttributes(run, segment, depth);
    bool complete = true;
    ContentsSearch search(run.row->filter);
    HC_FAST_CONTENTS_ITEM found;
    while (search.Next(found)) {
        std::string_view typeWord(found.type, found.type_length);
        ObjectType type = ObjectTypeOfWord(typeWord);
        HC_KEY item = found.key;
        HC_KEY target = item;
        unsigned holds = found.holds;
        int itemDepth = depth;
        if (type == ObjectType::Include) {
            run.path[static_cast<size_t>(itemDepth)] = item;
            if (++itemDepth >= kMaxDepth) return false;
            target = HC_Show_Include_Segment(item, nullptr);
            holds = HC_Fast_Segment_Holds(target);
        }
        // What a contents search returns is alive, and so is what a live include includes.
        if ((type == ObjectType::Segment || type == ObjectType::Include) && IsObjectKey(target) &&
            (itemDepth + 1 >= kMaxDepth || MayHoldHits(*run.row, holds)) &&
            !SearchStep(run, target, itemDepth))
            complete = false;
        Candidate candidate{typeWord, type, item, target, {found.name, found.name_length}};
        if (run.row->isHit(run.query, candidate)) RecordHit(run, depth, item);
    }
    return complete;
}

void HoopsSegmentTree::SearchSegmentAttributes(SearchRun& run, HC_KEY segment, int depth) {
    bool unset = run.second == "unset";
    bool hit = false;
    for (const auto& attribute : m_lists.segmentAttributes) {
        if (!attribute->Exists()) continue;
        std::string name = ToLower(attribute->GetName()).substr(0, kMaxAttributeName);
        std::string value = attribute->Show();
        if (!run.second.empty() && !unset) {
            std::string replaced = ReplaceAll(value, run.query.find, run.second);
            if (replaced != value) {
                attribute->Set(replaced);
                value = attribute->Show();
            }
        }
        if (!Contains(value, run.query.find) && !Contains(name, run.query.find)) continue;
        if (unset)
            attribute->UnSet();
        else
            hit = true;
    }
    if (!hit) return;
    SearchResult result;
    result.keys.assign(run.path.begin(), run.path.begin() + (depth - 1));
    result.keys.push_back(HC_Show_Original_Key(segment));
    run.results.push_back(std::move(result));
}

void HoopsSegmentTree::RecordHit(SearchRun& run, int depth, HC_KEY item) {
    SearchResult result;
    result.keys.assign(run.path.begin(), run.path.begin() + depth);
    result.keys.push_back(item);
    run.results.push_back(std::move(result));
}

// --- Revealing ------------------------------------------------------------------------------

namespace {

// Expands a node through the graph, as a click on its expander would, unless it is expanded.
TreeGraphItem* ChildWithKey(TreeGraphItem* node, HC_KEY key) {
    for (TreeGraphItem* child = node->GetFirstChild(); child; child = child->GetNextSibling())
        if (child->GetKey() == key) return child;
    return nullptr;
}

// Page entries carry the keys the database lists them by, which may be renumbered ones.
TreeGraphItem* ChildWithOriginalKey(TreeGraphItem* node, HC_KEY original) {
    for (TreeGraphItem* child = node->GetFirstChild(); child; child = child->GetNextSibling())
        if (child->GetKey() == original ||
            (IsAlive(child->GetKey()) && HC_Show_Original_Key(child->GetKey()) == original))
            return child;
    return nullptr;
}

} // namespace

TreeGraphItem* HoopsSegmentTree::OpenGroup(TreeGraphItem* node, NodeKind kind,
                                           std::uint32_t index) {
    for (TreeGraphItem* child = node->GetFirstChild(); child; child = child->GetNextSibling()) {
        NodeData data = DataOf(child);
        if (data.kind == kind && data.index == index) {
            OpenNode(child);
            return child;
        }
    }
    return nullptr;
}

// Finds (expanding on the way) the node under node that stands for key: a segment node, or the
// item under its grouping nodes and pages.
TreeGraphItem* HoopsSegmentTree::FindChildFor(TreeGraphItem* node, HC_KEY key) {
    if (!IsAlive(key)) return nullptr;
    HC_KEY original = HC_Show_Original_Key(key);
    if (original == node->GetKey()) {
        TreeGraphItem* defines = OpenGroup(node, NodeKind::DefinesGroup);
        return defines ? defines : node;
    }
    for (TreeGraphItem* child = node->GetFirstChild(); child; child = child->GetNextSibling())
        if ((child->GetKey() == original || child->GetKey() == key) && !IsKeyedGroup(KindOf(child)))
            return child;
    std::string typeWord = KeyType(key);
    switch (ObjectTypeOfWord(typeWord)) {
    case ObjectType::Segment: {
        if (!IsAlive(node->GetKey()) || ObjectTypeOf(node->GetKey()) != ObjectType::Segment)
            return nullptr;
        int position = SubsegmentPosition(node->GetKey(), key);
        for (TreeGraphItem* page = node->GetFirstChild(); page && position;
             page = page->GetNextSibling()) {
            NodeData range = DataOf(page);
            if (range.kind != NodeKind::SegmentPage || position < static_cast<int>(range.first) ||
                position > static_cast<int>(range.last))
                continue;
            OpenNode(page);
            return ChildWithOriginalKey(page, original);
        }
        return nullptr;
    }
    case ObjectType::Include:
    case ObjectType::Style:
    case ObjectType::NamedStyle: {
        ObjectType type = ObjectTypeOfWord(typeWord);
        NodeKind groupKind = type == ObjectType::Include ? NodeKind::IncludesGroup
                             : type == ObjectType::Style ? NodeKind::StylesGroup
                                                         : NodeKind::NamedStylesGroup;
        TreeGraphItem* group = OpenGroup(node, groupKind);
        return group ? ChildWithKey(group, key) : nullptr;
    }
    case ObjectType::StaticModel:
        return OpenGroup(node, NodeKind::StaticTree);
    case ObjectType::Reference: {
        TreeGraphItem* references = OpenGroup(node, NodeKind::ReferencesGroup);
        HC_KEY referee = HC_Show_Reference_Geometry(key);
        if (!references || !IsAlive(referee)) return nullptr;
        TreeGraphItem* kind = OpenGroup(references, ObjectTypeOf(referee) == ObjectType::Segment
                                                        ? NodeKind::SegmentRefGroup
                                                        : NodeKind::GeometryRefGroup);
        if (!kind) return nullptr;
        if (TreeGraphItem* found = ChildWithKey(kind, key)) return found;
        for (TreeGraphItem* page = kind->GetFirstChild(); page; page = page->GetNextSibling()) {
            if (KindOf(page) != NodeKind::ReferencePage) continue;
            OpenNode(page);
            if (TreeGraphItem* found = ChildWithKey(page, key)) return found;
        }
        return nullptr;
    }
    default: {
        TreeGraphItem* geometry = OpenGroup(node, NodeKind::GeometryGroup);
        std::uint32_t index = GeometryKindIndex(typeWord);
        TreeGraphItem* kind = geometry && index != kNoKind
                                  ? OpenGroup(geometry, NodeKind::GeometryKind, index)
                                  : nullptr;
        return kind ? ChildWithKey(kind, key) : nullptr;
    }
    }
}

TreeGraphItem* HoopsSegmentTree::Reveal(const SearchResult& result, TreeGraphItem* start) {
    TreeGraphItem* node = start;
    for (size_t i = 1; i < result.keys.size() && node; ++i) {
        OpenNode(node);
        node = FindChildFor(node, result.keys[i]);
    }
    return node;
}
