// What the default segment-tree optimisation does to a scene of many small segments with repeated
// shells and matrices: how many segments and shells it stores, how many bytes its metafile takes,
// how long a full walk takes, before and after; and how long the optimisation itself takes.
#include <benchmark/benchmark.h>
#include <string>

#include <obsidra/hc.h>

#include "hc/database.h"
#include "hc/metafile.h"

namespace {

// The string the "Optimize Segment" dialog makes with its defaults.
constexpr const char* kDefault =
    "process includes,localize matrices,preserve user data=(merge,localize),reorganize";

int Count(const char* filter) {
    HC_Begin_Contents_Search("/...", filter);
    int count = 0;
    HC_Show_Contents_Count(&count);
    HC_End_Contents_Search();
    return count;
}

// Every segment and item the scene draws, through includes, reading each shell's size.
long Walk() {
    HC_Begin_Contents_Search("/scene/....", "segments, geometry");
    char type[HC_TEXT_MAX];
    HC_KEY key;
    long points = 0;
    while (HC_Find_Contents(type, &key)) {
        int count = 0, faces = 0;
        if (type[0] == 's' && type[1] == 'h') HC_Show_Shell_Size(key, &count, &faces);
        points += count;
    }
    HC_End_Contents_Search();
    return points;
}

// An imported model's shape: n nameless parts, each placed by a matrix, each with a nameless
// segment per material colour holding a cube and a triangle that every part repeats.
void Build(benchmark::State& state) {
    HC_Reset_System();
    const HC_POINT cube[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0},
                             {0, 0, 1}, {1, 0, 1}, {0, 1, 1}, {1, 1, 1}};
    const int cubeFaces[] = {4, 0, 1, 3, 2, 4, 4, 6, 7, 5, 4, 0, 4, 5, 1,
                             4, 2, 3, 7, 6, 4, 0, 2, 6, 4, 4, 1, 5, 7, 3};
    const int triangleFaces[] = {3, 0, 1, 2};
    HC_Open_Segment("/scene");
    for (int i = 0; i < state.range(0); ++i) {
        HC_Open_Segment("");
        const float place[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, float(i % 100), float(i / 100),
                                 0, 1};
        HC_Set_Modelling_Matrix(place);
        for (const char* color : {"faces=red", "faces=green", "faces=blue"}) {
            HC_Open_Segment("");
            HC_Set_Color(color);
            HC_Insert_Shell(8, cube, 30, cubeFaces);
            HC_Insert_Shell(3, cube, 4, triangleFaces);
            HC_Close_Segment();
        }
        HC_Close_Segment();
    }
    HC_Close_Segment();
}

void BM_OptimizeWalk(benchmark::State& state) {
    Build(state);
    if (state.range(1)) HC_Optimize_Segment_Tree("/scene", kDefault);
    for (auto _ : state)
        benchmark::DoNotOptimize(Walk());
    state.counters["segments"] = Count("segments");
    state.counters["shells"] = Count("shells");
    hc::Database& db = hc::Current();
    state.counters["bytes"] = static_cast<double>(hc::MetafileText(db, db.Root()).size());
}
BENCHMARK(BM_OptimizeWalk)
    ->ArgNames({"parts", "optimized"})
    ->ArgsProduct({{2000, 20000}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

void BM_OptimizeDefault(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        Build(state);
        state.ResumeTiming();
        HC_Optimize_Segment_Tree("/scene", kDefault);
    }
}
BENCHMARK(BM_OptimizeDefault)->Arg(2000)->Arg(20000)->Unit(benchmark::kMillisecond);

} // namespace
