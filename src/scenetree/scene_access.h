#pragma once

// Small helpers over the scene database's C interface that every part of the segment tree uses:
// key texts, segment names, and scopes that pair each open with its close and each contents
// search with its end, so that no early return leaves the database's stacks unbalanced.

#include <string>
#include <string_view>

#include <obsidra/hc.h>

namespace obsidra::scenetree {

// Subsegments and references beyond this many are shown in numbered pages of this size.
inline constexpr int kPageSize = 1000;

// 0 and -1 name nothing: grouping nodes and pages carry them.
constexpr bool IsObjectKey(HC_KEY key) {
    return key != 0 && key != -1;
}

// Whether the key names a live object. The one question that may be put to a dead key.
bool IsAlive(HC_KEY key);

// "%llX" of the key: a negative key prints as 16 digits beginning with F.
std::string KeyText(HC_KEY key);

// printf into a buffer of HC_TEXT_MAX bytes, cut there as the browser's buffers cut it.
std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

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
// The last level of a pathname; "/" stays "/".
std::string OwnName(const std::string& pathname);
std::string ToUpper(std::string_view text);
std::string ToLower(std::string_view text);

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
    int Count() const;

private:
    char m_type[HC_TEXT_MAX];
};

} // namespace obsidra::scenetree
