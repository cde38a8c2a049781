#pragma once

// Small helpers over the scene database's C interface that every part of the segment tree uses:
// segment names, the sort of object a key names, and scopes that pair each open with its close and
// each contents search with its end, so that no early return leaves the database's stacks
// unbalanced.

#include <string>
#include <string_view>

#include <obsidra/hc.h>
#include <obsidra/hc_fastpath.h>

#include "text/text.h"

namespace obsidra::scenetree {

// Subsegments and references beyond this many are shown in numbered pages of this size.
inline constexpr int kPageSize = 1000;

// 0 and -1 name nothing: grouping nodes and pages carry them.
constexpr bool IsObjectKey(HC_KEY key) {
    return key != 0 && key != -1;
}

// Whether the key names a live object. The one question that may be put to a dead key.
bool IsAlive(HC_KEY key);

static_assert(HC_TEXT_MAX == text::kBufferSize, "texts are cut where the browser's buffers end");

using text::Format;
using text::KeyText;
using text::ToLower;
using text::ToUpper;

std::string KeyType(HC_KEY key);

// The sort of object a key names, from the type word the database gives it: every word that is
// none of the others and names no definition is a geometry item's ("shell", "text").
enum class ObjectType {
    None,
    Segment,
    Include,
    Style,
    NamedStyle,
    Reference,
    StaticModel,
    Definition,
    Geometry,
};
ObjectType ObjectTypeOfWord(std::string_view typeWord);
ObjectType ObjectTypeOf(HC_KEY key);
std::string SegmentPath(HC_KEY key);

class SegmentScope {
public:
    explicit SegmentScope(HC_KEY key) { HC_Open_Segment_By_Key(key); }
    ~SegmentScope() { HC_Close_Segment(); }
    SegmentScope(const SegmentScope&) = delete;
    SegmentScope& operator=(const SegmentScope&) = delete;
};

class GeometryScope {
public:
    explicit GeometryScope(HC_KEY key) { HC_Open_Geometry(key); }
    ~GeometryScope() { HC_Close_Geometry(); }
    GeometryScope(const GeometryScope&) = delete;
    GeometryScope& operator=(const GeometryScope&) = delete;
};

// A contents search of the open segment (scope ".").
class ContentsSearch {
public:
    explicit ContentsSearch(const char* filter) { HC_Begin_Contents_Search(".", filter); }
    ~ContentsSearch() { HC_End_Contents_Search(); }
    ContentsSearch(const ContentsSearch&) = delete;
    ContentsSearch& operator=(const ContentsSearch&) = delete;

    bool Next(std::string& type, HC_KEY& key);
    // The same with what a walk asks of a segment next, in one call to the database.
    bool Next(HC_FAST_CONTENTS_ITEM& item) { return HC_Fast_Find_Contents(&item); }
    int Count() const;

private:
    char m_type[HC_TEXT_MAX];
};

} // namespace obsidra::scenetree
