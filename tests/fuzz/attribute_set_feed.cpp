#include "attribute_set_feed.h"

#include <algorithm>

#include <obsidra/hc.h>

#include "descriptors/descriptor_lists.h"

namespace {

size_t SetAndShowAll(obsidra::descriptors::AttributeList& descriptors, std::string_view line) {
    size_t longest = 0;
    for (auto& descriptor : descriptors) {
        descriptor->Set(line);
        descriptor->Exists();
        longest = std::max({longest, descriptor->Show().size(), descriptor->ShowNet().size()});
    }
    return longest;
}

} // namespace

size_t FeedAttributeSetters(std::string_view line) {
    HC_Reset_System();
    obsidra::descriptors::AttributeList descriptors = obsidra::descriptors::MakeSegmentAttributes();
    HC_Open_Segment("/fed");
    // A clip region's Set needs points it has shown.
    HC_POINT square[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    HC_Set_Polygonal_Clip_Region(4, square, "window");
    for (auto& descriptor : descriptors)
        descriptor->Show();
    HC_Set_User_Index(1, nullptr);
    HC_Set_User_Data(2, "x", 1);

    size_t longest = SetAndShowAll(descriptors, line);
    int faces[] = {3, 0, 1, 2};
    HC_Open_Geometry(HC_Insert_Shell(3, square, 4, faces));
    longest = std::max(longest, SetAndShowAll(descriptors, line));
    for (auto& descriptor : descriptors)
        descriptor->UnSet();
    HC_Close_Geometry();
    HC_Open_Segment("child");
    longest = std::max(longest, SetAndShowAll(descriptors, line));
    HC_Close_Segment();
    for (auto& descriptor : descriptors)
        descriptor->UnSet();
    HC_Close_Segment();
    return longest;
}
