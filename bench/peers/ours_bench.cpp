// The side-by-side work on our scene database, through the HC_ interface and the census.
#include <cstring>
#include <string>
#include <vector>

#include <obsidra/hc.h>

#include "mvo/model_info.h"
#include "peer_harness.h"

namespace {

using peers::Shape;

const int kFaces[] = {3, 0, 1, 2};

struct Builder {
    HC_KEY root = 0;
    HC_KEY movedLeaf = 0;
    std::vector<HC_KEY> subtrees; // the root's children
    HC_KEY current = 0;

    void Open(const char* name, int depth) {
        current = HC_Open_Segment(depth == 0 ? "/scene" : name);
        if (depth == 0) root = current;
        if (depth == 1) subtrees.push_back(current);
    }
    void Shell(const float* points, long leaf) {
        HC_Insert_Shell(3, reinterpret_cast<const HC_POINT*>(points), 4, kFaces);
        if (leaf == peers::kMovedLeaf) movedLeaf = current;
    }
    void Close() { HC_Close_Segment(); }
};

void Walk(long& segments, long& shells) {
    segments = shells = 0;
    char type[HC_TEXT_MAX];
    HC_KEY key;
    HC_Begin_Contents_Search("/scene/...", "everything");
    while (HC_Find_Contents(type, &key)) {
        if (std::strcmp(type, "segment") == 0)
            ++segments;
        else if (std::strcmp(type, "shell") == 0)
            ++shells;
    }
    HC_End_Contents_Search();
}

// The name is matched inside the database: a segment search whose last level is a wildcard.
long SearchNames() {
    std::vector<std::string> found;
    char path[HC_TEXT_MAX];
    HC_Begin_Segment_Search(peers::kSearchPattern);
    while (HC_Find_Segment(path))
        found.emplace_back(path);
    HC_End_Segment_Search();
    return static_cast<long>(found.size());
}

long CountSegments() {
    int count = 0;
    HC_Begin_Contents_Search("/scene/...", "segments");
    HC_Show_Contents_Count(&count);
    HC_End_Contents_Search();
    return count;
}

} // namespace

int main(int argc, char** argv) {
    const Shape shape = peers::ParseShape(argc, argv);
    const long residentBefore = peers::ResidentBytes();
    Builder builder;
    peers::ReportTime("build", peers::TimeOnce([&] { peers::BuildScene(shape, builder); }));
    peers::ReportMemory(shape, residentBefore);

    HC_POINT min, max;
    peers::ReportTime("bounds",
                      peers::TimeOnce([&] { HC_Compute_Circumcuboid("/scene", &min, &max); }));
    peers::ReportBox("bounds", &min.x, &max.x);

    long segments = 0, shells = 0;
    peers::ReportTime("walk", peers::TimeMedian([&](int) { Walk(segments, shells); }));
    peers::ReportAnswer("walk_segments", segments);
    peers::ReportAnswer("walk_shells", shells);

    long matches = 0;
    peers::ReportTime("search", peers::TimeMedian([&](int) { matches = SearchNames(); }));
    peers::ReportAnswer("search_matches", matches);

    // The shells counted twice: by a contents search, the plain way to count items of a kind, and
    // by the census, which reads every shell's face list for the face and vertex totals too.
    long shellCount = 0;
    peers::ReportTime("shells", peers::TimeMedian([&](int) {
                          int count = 0;
                          HC_Begin_Contents_Search("/scene/...", "shells");
                          HC_Show_Contents_Count(&count);
                          HC_End_Contents_Search();
                          shellCount = count;
                      }));
    peers::ReportAnswer("shells", shellCount);
    peers::ReportTime("census", peers::TimeMedian([&](int) {
                          HModelInfo info;
                          info.ComputeModelInfo(builder.root, 0);
                          // Reported only when it differs, which run.sh then flags.
                          if (info.GetTotalShell() != shellCount)
                              peers::ReportAnswer("census_shells", info.GetTotalShell());
                      }));

    peers::ReportTime("move_bounds", peers::TimeMedian([&](int run) {
                          float matrix[16] = {
                              1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, peers::MovedLeafZ(run), 1};
                          HC_Open_Segment_By_Key(builder.movedLeaf);
                          HC_Set_Modelling_Matrix(matrix);
                          HC_Close_Segment();
                          HC_Compute_Circumcuboid("/scene", &min, &max);
                      }));
    peers::ReportBox("moved_bounds", &min.x, &max.x);

    const size_t half = builder.subtrees.size() / 2;
    peers::ReportTime("delete_half", peers::TimeOnce([&] {
                          for (size_t i = half; i < builder.subtrees.size(); ++i)
                              HC_Delete_By_Key(builder.subtrees[i]);
                      }));
    peers::ReportAnswer("segments_left", CountSegments());
    return 0;
}
