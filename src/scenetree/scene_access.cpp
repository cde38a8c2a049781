#include "scenetree/scene_access.h"

#include <cctype>
#include <cstdarg>
#include <cstdio>

namespace obsidra::scenetree {

bool IsAlive(HC_KEY key) {
    return IsObjectKey(key) && HC_Show_Existence_By_Key(key, "self") != 0;
}

std::string KeyText(HC_KEY key) {
    return Format("%llX", static_cast<unsigned long long>(key));
}

std::string Format(const char* format, ...) {
    char buffer[HC_TEXT_MAX];
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    return buffer;
}

std::string KeyType(HC_KEY key) {
    char type[HC_TEXT_MAX] = "";
    HC_Show_Key_Type(key, type);
    return type;
}

ObjectType ObjectTypeOfWord(std::string_view typeWord) {
    static constexpr struct {
        std::string_view word;
        ObjectType type;
    } kWords[] = {
        {"segment", ObjectType::Segment},     {"include", ObjectType::Include},
        {"style", ObjectType::Style},         {"named style", ObjectType::NamedStyle},
        {"reference", ObjectType::Reference}, {"static model", ObjectType::StaticModel},
    };
    if (typeWord.empty()) return ObjectType::None;
    for (const auto& entry : kWords)
        if (typeWord == entry.word) return entry.type;
    return typeWord.find("definition") != std::string_view::npos ? ObjectType::Definition
                                                                 : ObjectType::Geometry;
}

ObjectType ObjectTypeOf(HC_KEY key) {
    return ObjectTypeOfWord(KeyType(key));
}

std::string SegmentPath(HC_KEY key) {
    char path[HC_TEXT_MAX] = "";
    HC_Show_Segment(key, path);
    return path;
}

std::string OwnName(const std::string& pathname) {
    if (pathname.size() <= 1) return pathname;
    char name[HC_TEXT_MAX] = "";
    HC_Parse_String(pathname.c_str(), "/", -1, name);
    return name;
}

std::string ToUpper(std::string_view text) {
    std::string upper(text);
    for (char& c : upper)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return upper;
}

std::string ToLower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return lower;
}

bool ContentsSearch::Next(std::string& type, HC_KEY& key) {
    if (!HC_Find_Contents(m_type, &key)) return false;
    type = m_type;
    return true;
}

int ContentsSearch::Count() const {
    int count = 0;
    HC_Show_Contents_Count(&count);
    return count;
}

} // namespace obsidra::scenetree
