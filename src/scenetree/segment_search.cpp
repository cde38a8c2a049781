// The searches over the segment tree: a walk down subsegments and includes from a node's
// segment, a test per item by kind, then every hit revealed in the tree (or deleted).

#include <array>
#include <cstdlib>
#include <cstring>

#include "scenetree/database_lists.h"
#include "scenetree/hoops_segment_tree.h"
#include "scenetree/scene_access.h"

using namespace obsidra::scenetree;

namespace {

// The longest path of segments and includes a search follows; deeper branches are cut.
constexpr int kMaxDepth = 256;
constexpr size_t kMaxText = HC_TEXT_MAX - 1;
constexpr size_t kMaxAttributeName = 31;

constexpr char kDepthMessage[] =
    "Maximum search depth reached.  Some search results may be omitted.";

const char* FilterOf(SearchKind kind) {
    switch (kind) {
    case SearchKind::Attribute:
    case SearchKind::Segment:
    case SearchKind::Include:
        return "segments, includes";
    case SearchKind::Geometry:
        return "segments, includes, geometry";
    case SearchKind::Style:
        return "segments, includes, styles";
    case SearchKind::SegmentReference:
    case SearchKind::GeometryReference:
        return "segments, includes, reference";
    case SearchKind::Definition:
        return "segments, includes, texture definition, glyph definition, "
               "line style definition, named style definition";
    case SearchKind::Key:
        return "everything, static model, no attributes";
    case SearchKind::NamedStyle:
        return "segments, includes, named styles";
    }
    return "segments, includes";
}

bool MayDelete(SearchKind kind) {
    return kind != SearchKind::Attribute && kind != SearchKind::Definition &&
           kind != SearchKind::Key;
}

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

bool IsGeometryType(const std::string& type) {
    return type != "segment" && type != "include" && type != "style" && type != "named style" &&
           type != "reference" && type != "static model" && !Contains(type, "definition");
}

// The definitions of one sort in the open segment, by name.
std::vector<std::string> DefinitionNames(const std::string& type) {
    std::vector<std::string> names;
    char name[HC_TEXT_MAX];
    if (Contains(type, "texture")) {
        HC_Begin_Texture_Search();
        while (HC_Find_Texture(name))
            names.emplace_back(name);
        HC_End_Texture_Search();
    } else if (Contains(type, "glyph")) {
        HC_Begin_Glyph_Search();
        while (HC_Find_Glyph(name))
            names.emplace_back(name);
        HC_End_Glyph_Search();
    } else if (Contains(type, "line style")) {
        HC_Begin_Line_Style_Search();
        while (HC_Find_Line_Style(name))
            names.emplace_back(name);
        HC_End_Line_Style_Search();
    } else if (Contains(type, "named style")) {
        HC_Begin_Named_Style_Search();
        while (HC_Find_Named_Style(name))
            names.emplace_back(name);
        HC_End_Named_Style_Search();
    }
    return names;
}

// Whether a step into the segment could find anything: a leaf segment holding nothing the
// kind's filter lists is not opened at all. Attributes are looked at in every segment.
bool MayHoldHits(SearchKind kind, HC_KEY segment) {
    SegmentHolds holds = WhatSegmentHolds(segment);
    if (kind == SearchKind::Attribute || holds.subsegments || holds.links) return true;
    switch (kind) {
    case SearchKind::Geometry:
        return holds.geometry;
    case SearchKind::Definition:
        return holds.definitions;
    case SearchKind::Key:
        return holds.geometry || holds.definitions || holds.staticModel;
    default:
        return false;
    }
}

std::vector<HC_KEY> ReferenceKeys(HC_KEY item) {
    int count = 0;
    HC_Show_Reference_Keys_Count(item, &count);
    std::vector<HC_KEY> keys(static_cast<size_t>(count > 0 ? count : 0));
    if (count > 0) HC_Show_Reference_Keys(item, &count, keys.data());
    return keys;
}

} // namespace

struct HoopsSegmentTree::SearchRun {
    SearchKind kind;
    std::string find;
    std::string second;
    HC_KEY findKey = 0;
    std::array<HC_KEY, kMaxDepth> path{};
    std::vector<SearchResult> results;
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
    if (!start || !IsAlive(start->GetKey()) || KeyType(start->GetKey()) != "segment") return 0;

    SearchRun run;
    run.kind = kind;
    size_t separator = text.find("$$");
    run.find = std::string(text.substr(0, separator)).substr(0, kMaxText);
    if (separator != std::string_view::npos)
        run.second = std::string(text.substr(separator + 2)).substr(0, kMaxText);
    if (kind == SearchKind::Key) {
        char* end = nullptr;
        run.findKey = static_cast<HC_KEY>(std::strtoull(run.find.c_str(), &end, 16));
        if (*end || run.find.empty()) run.findKey = 0;
        if (IsAlive(run.findKey)) run.findKey = HC_Show_Original_Key(run.findKey);
    }

    bool complete = SearchStep(run, start->GetKey(), 0);
    if (!complete && m_notifier) m_notifier->ShowMessage(kDepthMessage);

    bool deleting = MayDelete(kind) && run.second == "delete";
    for (const SearchResult& result : run.results) {
        HC_KEY hit = result.keys.back();
        if (deleting) {
            if (IsAlive(hit)) HC_Delete_By_Key(hit);
        } else if (TreeGraphItem* node = Reveal(result, start)) {
            node->SetHighlighted(true);
            m_revealed.push_back(node);
        }
    }
    m_results = std::move(run.results);
    return static_cast<int>(m_results.size());
}

// Hits below an item are found before the item itself; the start segment is never a hit but
// for its attributes.
bool HoopsSegmentTree::SearchStep(SearchRun& run, HC_KEY segment, int depth) {
    run.path[static_cast<size_t>(depth)] = segment;
    ++depth;
    if (depth >= kMaxDepth) return false;
    SegmentScope open(segment);
    if (run.kind == SearchKind::Attribute) SearchSegmentAttributes(run, segment, depth);
    bool complete = true;
    ContentsSearch search(FilterOf(run.kind));
    std::string type;
    HC_KEY item = 0;
    while (search.Next(type, item)) {
        HC_KEY target = item;
        int itemDepth = depth;
        if (type == "include") {
            run.path[static_cast<size_t>(itemDepth)] = item;
            if (++itemDepth >= kMaxDepth) return false;
            target = HC_Show_Include_Segment(item, nullptr);
        }
        // What a contents search returns is alive, and so is what a live include includes.
        if ((type == "segment" || type == "include") && IsObjectKey(target) &&
            (itemDepth + 1 >= kMaxDepth || MayHoldHits(run.kind, target)) &&
            !SearchStep(run, target, itemDepth))
            complete = false;
        if (IsHit(run, type, item, target)) RecordHit(run, depth, item);
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
            std::string replaced = ReplaceAll(value, run.find, run.second);
            if (replaced != value) {
                attribute->Set(replaced);
                value = attribute->Show();
            }
        }
        if (!Contains(value, run.find) && !Contains(name, run.find)) continue;
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

bool HoopsSegmentTree::IsHit(SearchRun& run, const std::string& type, HC_KEY item, HC_KEY target) {
    switch (run.kind) {
    case SearchKind::Attribute:
        return false;
    case SearchKind::Segment:
        return type == "segment" && Contains(SegmentOwnName(item), run.find);
    case SearchKind::Include:
        return type == "include" && IsAlive(target) && Contains(SegmentPath(target), run.find);
    case SearchKind::Geometry:
        return IsGeometryType(type) && Contains(type, run.find);
    case SearchKind::Style: {
        if (type != "style") return false;
        HC_KEY source = HC_Show_Style_Segment(item, nullptr);
        return IsAlive(source) && Contains(SegmentPath(source), run.find);
    }
    case SearchKind::NamedStyle: {
        if (type != "named style") return false;
        char name[HC_TEXT_MAX] = "";
        HC_Show_Named_Style_Segment(item, name);
        return Contains(name, run.find);
    }
    case SearchKind::SegmentReference:
    case SearchKind::GeometryReference: {
        if (type != "reference") return false;
        HC_KEY referee = HC_Show_Reference_Geometry(item);
        if (!IsAlive(referee)) return false;
        std::string refereeType = KeyType(referee);
        if (run.kind == SearchKind::SegmentReference)
            return refereeType == "segment" && Contains(SegmentPath(referee), run.find);
        return refereeType != "segment" && Contains(refereeType, run.find);
    }
    case SearchKind::Definition: {
        for (const std::string& name : DefinitionNames(type))
            if (Contains(name, run.find)) return true;
        return false;
    }
    case SearchKind::Key: {
        if (!IsObjectKey(run.findKey) || Contains(type, "definition")) return false;
        if (item == run.findKey || HC_Show_Original_Key(item) == run.findKey) return true;
        if (type != "reference" && !IsGeometryType(type)) return false;
        for (HC_KEY referenced : ReferenceKeys(item))
            if (referenced == run.findKey) return true;
        return false;
    }
    }
    return false;
}

void HoopsSegmentTree::RecordHit(SearchRun& run, int depth, HC_KEY item) {
    SearchResult result;
    result.keys.assign(run.path.begin(), run.path.begin() + depth);
    result.keys.push_back(item);
    run.results.push_back(std::move(result));
}

// --- Revealing ------------------------------------------------------------------------------

TreeGraphItem* HoopsSegmentTree::OpenGroup(TreeGraphItem* node, const char* label) {
    for (TreeGraphItem* child = node->GetFirstChild(); child; child = child->GetNextSibling())
        if (child->GetLabel() && std::strcmp(child->GetLabel(), label) == 0) {
            if (!child->GetExpandedMark()) {
                m_graph->OnExpandItem(child, true);
                child->Expand();
            }
            return child;
        }
    return nullptr;
}

namespace {

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

bool IsGroupLabel(const TreeGraphItem* node) {
    const char* label = node->GetLabel();
    return label &&
           (!std::strcmp(label, kStaticTreeLabel) || !std::strcmp(label, kReferencesLabel));
}

} // namespace

// Finds (expanding on the way) the node under node that stands for key: a segment node, or the
// item under its grouping nodes and pages.
TreeGraphItem* HoopsSegmentTree::FindChildFor(TreeGraphItem* node, HC_KEY key) {
    if (!IsAlive(key)) return nullptr;
    HC_KEY original = HC_Show_Original_Key(key);
    if (original == node->GetKey()) {
        TreeGraphItem* defines = OpenGroup(node, kDefinesLabel);
        return defines ? defines : node;
    }
    for (TreeGraphItem* child = node->GetFirstChild(); child; child = child->GetNextSibling())
        if ((child->GetKey() == original || child->GetKey() == key) && !IsGroupLabel(child))
            return child;
    std::string type = KeyType(key);
    if (type == "segment") {
        if (!IsAlive(node->GetKey()) || KeyType(node->GetKey()) != "segment") return nullptr;
        int position = SubsegmentPosition(node->GetKey(), key);
        for (TreeGraphItem* page = node->GetFirstChild(); page && position;
             page = page->GetNextSibling()) {
            int first = 0, last = 0;
            if (page->GetSelectionClass() != kClassSegmentPage || !page->GetLabel() ||
                std::sscanf(page->GetLabel(), "SEGMENTS %d-%d", &first, &last) != 2 ||
                position < first || position > last)
                continue;
            if (!page->GetExpandedMark()) {
                m_graph->OnExpandItem(page, true);
                page->Expand();
            }
            return ChildWithOriginalKey(page, original);
        }
        return nullptr;
    }
    if (type == "include" || type == "style" || type == "named style") {
        const char* label = type == "include" ? kIncludesLabel
                            : type == "style" ? kStylesLabel
                                              : kNamedStylesLabel;
        TreeGraphItem* group = OpenGroup(node, label);
        return group ? ChildWithKey(group, key) : nullptr;
    }
    if (type == "static model") return OpenGroup(node, kStaticTreeLabel);
    if (type == "reference") {
        TreeGraphItem* references = OpenGroup(node, kReferencesLabel);
        HC_KEY referee = HC_Show_Reference_Geometry(key);
        if (!references || !IsAlive(referee)) return nullptr;
        TreeGraphItem* kind = OpenGroup(
            references, KeyType(referee) == "segment" ? kSegmentRefLabel : kGeometryRefLabel);
        if (!kind) return nullptr;
        if (TreeGraphItem* found = ChildWithKey(kind, key)) return found;
        for (TreeGraphItem* page = kind->GetFirstChild(); page; page = page->GetNextSibling()) {
            if (page->GetSelectionClass() != kClassReferencePage) continue;
            if (!page->GetExpandedMark()) {
                m_graph->OnExpandItem(page, true);
                page->Expand();
            }
            if (TreeGraphItem* found = ChildWithKey(page, key)) return found;
        }
        return nullptr;
    }
    TreeGraphItem* geometry = OpenGroup(node, kGeometryLabel);
    TreeGraphItem* kind = geometry ? OpenGroup(geometry, ToUpper(type).c_str()) : nullptr;
    return kind ? ChildWithKey(kind, key) : nullptr;
}

TreeGraphItem* HoopsSegmentTree::Reveal(const SearchResult& result, TreeGraphItem* start) {
    TreeGraphItem* node = start;
    for (size_t i = 1; i < result.keys.size() && node; ++i) {
        if (!node->GetExpandedMark()) {
            m_graph->OnExpandItem(node, true);
            node->Expand();
        }
        node = FindChildFor(node, result.keys[i]);
    }
    return node;
}
