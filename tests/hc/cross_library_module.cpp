// A module as a host loads it: a shared object of its own that links the scene database library
// and works on whatever scene the process holds. The cross-library test loads it with dlopen.
#include <string>
#include <vector>

#include <obsidra/hc.h>

#define PROBE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

std::vector<std::string>& Reported() {
    static std::vector<std::string> reported;
    return reported;
}

void Record(const char* function, const char* message) {
    Reported().push_back(std::string(function) + ": " + message);
}

} // namespace

// How many items of the type a contents search finds in the segment.
PROBE_EXPORT int ProbeCountContents(const char* segment, const char* type) {
    HC_Begin_Contents_Search(segment, type);
    int count = 0;
    HC_Show_Contents_Count(&count);
    HC_End_Contents_Search();
    return count;
}

// Colours the segment and makes a subsegment in it; answers the new segment's key.
PROBE_EXPORT HC_KEY ProbeEdit(HC_KEY segment, const char* color, const char* child) {
    HC_Open_Segment_By_Key(segment);
    HC_Set_Color(color);
    HC_KEY made = HC_Create_Segment(child);
    HC_Close_Segment();
    return made;
}

// The pathnames a segment search finds.
PROBE_EXPORT int ProbeSegmentSearch(const char* pattern, char* first) {
    HC_Begin_Segment_Search(pattern);
    int count = 0;
    HC_Show_Segment_Count(&count);
    if (!HC_Find_Segment(first)) first[0] = '\0';
    HC_End_Segment_Search();
    return count;
}

// A call the database refuses, so that whichever handler is in place hears of it.
PROBE_EXPORT void ProbeMisuse() {
    HC_Close_Segment();
}

PROBE_EXPORT void ProbeInstallHandler() {
    Reported().clear();
    HC_Define_Error_Handler(&Record);
}

PROBE_EXPORT int ProbeReportedCount() {
    return static_cast<int>(Reported().size());
}
