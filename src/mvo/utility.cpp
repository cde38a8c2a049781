#include "mvo/utility.h"

#include <cstring>

std::vector<HC_KEY> HUtility::BuildIncludePath(HC_KEY objectKey,
                                               const std::vector<HC_KEY>& includes, HC_KEY topKey) {
    std::vector<HC_KEY> path{objectKey};
    path.insert(path.end(), includes.rbegin(), includes.rend());
    if (topKey != 0 && topKey != -1 && topKey != objectKey) path.push_back(topKey);
    return path;
}

bool HUtility::RenameSegment(HC_KEY segmentKey, const char* newName) {
    if (!IsSegmentKey(segmentKey) || !newName || !*newName || std::strchr(newName, '/'))
        return false;
    char path[HC_TEXT_MAX];
    HC_Show_Segment(segmentKey, path);
    HC_Rename_Segment(path, newName);
    HC_Show_Segment(segmentKey, path);
    return OwnName(path) == newName;
}

std::string HUtility::OwnName(const std::string& pathname) {
    if (pathname.size() <= 1) return pathname;
    char name[HC_TEXT_MAX] = "";
    HC_Parse_String(pathname.c_str(), "/", -1, name);
    return name;
}

bool HUtility::IsSegmentKey(HC_KEY key) {
    if (key == 0 || key == -1 || !HC_Show_Existence_By_Key(key, "self")) return false;
    char type[HC_TEXT_MAX];
    HC_Show_Key_Type(key, type);
    return std::strcmp(type, "segment") == 0;
}

bool HUtility::SegmentExists(const char* segment) {
    return segment && HC_QShow_Existence(segment, "self") != 0;
}

std::string HUtility::FindFileNameExtension(std::string_view filename) {
    size_t level = filename.find_last_of("/\\");
    std::string_view name = level == std::string_view::npos ? filename : filename.substr(level + 1);
    size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string() : std::string(name.substr(dot + 1));
}
