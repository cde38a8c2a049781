#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <obsidra/hc.h>

// Small helpers over the scene that views and dialogs share.
class HUtility {
public:
    // The include path of an item reached from a top segment through includes, bottom-up as
    // HC_PShow_Net_* and HSelectionSet take it: the item, the includes passed through (innermost
    // first, reversed from the outermost-first list given), then the top segment.
    static std::vector<HC_KEY> BuildIncludePath(HC_KEY objectKey,
                                                const std::vector<HC_KEY>& includes, HC_KEY topKey);
    // Renames the segment of a key; the new name is one level. False when it cannot.
    static bool RenameSegment(HC_KEY segmentKey, const char* newName);
    static bool IsSegmentKey(HC_KEY key);
    // The last level of a segment's pathname, as HC_Parse_String gives it; "/" stays "/".
    static std::string OwnName(const std::string& pathname);
    // Whether a segment of that path exists; asks without creating it.
    static bool SegmentExists(const char* segment);
    // The text after the last '.' of a file name's last path level; empty when there is none.
    static std::string FindFileNameExtension(std::string_view filename);
};
