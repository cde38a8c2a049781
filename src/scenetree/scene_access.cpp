#include "scenetree/scene_access.h"

namespace obsidra::scenetree {

bool IsAlive(HC_KEY key) {
    return IsObjectKey(key) && HC_Show_Existence_By_Key(key, "self") != 0;
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
