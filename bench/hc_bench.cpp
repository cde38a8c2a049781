// The scene database at scale: building, key lookup, contents searches and subtree walks, and
// what the change journal and undo cost them.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>
#include <malloc.h>
#include <random>
#include <string>
#include <vector>

#include <obsidra/hc.h>
#include <obsidra/hc_journal.h>
#include <obsidra/hc_undo.h>

#include "hc/database.h"
#include "hc/metafile.h"

namespace {

const HC_POINT kTriangle[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
const int kFaces[] = {3, 0, 1, 2};

// Large blocks (the object pools') are mapped apart from the heap: both count.
size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

double ResidentMegabytes() {
    long pages = 0, resident = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(f);
    }
    return static_cast<double>(resident) * 4096.0 / (1024.0 * 1024.0);
}

// n named segments under /flat, each holding one triangle shell.
void BuildFlat(int n) {
    char name[32];
    HC_Open_Segment("/flat");
    for (int i = 0; i < n; ++i) {
        std::snprintf(name, sizeof name, "s%d", i);
        HC_Open_Segment(name);
        HC_Insert_Shell(3, kTriangle, 4, kFaces);
        HC_Close_Segment();
    }
    HC_Close_Segment();
}

// 100 x 100 x 100 segments below /tree, a shell in each leaf.
void BuildTree() {
    char name[32];
    HC_Open_Segment("/tree");
    for (int a = 0; a < 100; ++a) {
        std::snprintf(name, sizeof name, "a%d", a);
        HC_Open_Segment(name);
        for (int b = 0; b < 100; ++b) {
            std::snprintf(name, sizeof name, "b%d", b);
            HC_Open_Segment(name);
            for (int c = 0; c < 100; ++c) {
                std::snprintf(name, sizeof name, "c%d", c);
                HC_Open_Segment(name);
                HC_Insert_Shell(3, kTriangle, 4, kFaces);
                HC_Close_Segment();
            }
            HC_Close_Segment();
        }
        HC_Close_Segment();
    }
    HC_Close_Segment();
}

// Registered first: the object pools then hold no places freed by other benchmarks, so every
// object the build makes is counted. One build, one iteration.
void BM_MemoryOfMillionSegments(benchmark::State& state) {
    const int n = 1000000;
    for (auto _ : state) {
        HC_Reset_System();
        malloc_trim(0);
        const size_t heapBefore = HeapInUse();
        BuildFlat(n);
        state.counters["heap_bytes_per_segment"] =
            static_cast<double>(HeapInUse() - heapBefore) / n;
        state.counters["resident_mb"] = ResidentMegabytes();
    }
    HC_Reset_System();
}
BENCHMARK(BM_MemoryOfMillionSegments)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_CreateSegmentsWithShell(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        HC_Reset_System();
        state.ResumeTiming();
        BuildFlat(n);
    }
    state.SetItemsProcessed(state.iterations() * n);
    HC_Reset_System();
}
BENCHMARK(BM_CreateSegmentsWithShell)
    ->Arg(1000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);

void BM_KeyLookup(benchmark::State& state) {
    HC_Reset_System();
    BuildFlat(1000000);
    std::vector<HC_KEY> keys;
    HC_Open_Segment("/flat");
    HC_Begin_Contents_Search(".", "segments");
    char type[HC_TEXT_MAX];
    HC_KEY key;
    while (HC_Find_Contents(type, &key))
        keys.push_back(key);
    HC_End_Contents_Search();
    HC_Close_Segment();
    std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
    size_t i = 0;
    int live = 0;
    for (auto _ : state) {
        live += HC_Show_Existence_By_Key(keys[i], "self");
        HC_Show_Key_Type(keys[i], type);
        benchmark::DoNotOptimize(type);
        if (++i == keys.size()) i = 0;
    }
    benchmark::DoNotOptimize(live);
    state.SetItemsProcessed(state.iterations());
    HC_Reset_System();
}
BENCHMARK(BM_KeyLookup);

void BM_ContentsCountOfMillionSubsegments(benchmark::State& state) {
    HC_Reset_System();
    BuildFlat(1000000);
    HC_Open_Segment("/flat");
    for (auto _ : state) {
        int count = 0;
        HC_Begin_Contents_Search(".", "segments");
        HC_Show_Contents_Count(&count);
        HC_End_Contents_Search();
        if (count != 1000000) state.SkipWithError("wrong count");
    }
    HC_Close_Segment();
    HC_Reset_System();
}
BENCHMARK(BM_ContentsCountOfMillionSubsegments)->Unit(benchmark::kMillisecond);

void BM_ContentsWalkOfMillionSubsegments(benchmark::State& state) {
    HC_Reset_System();
    BuildFlat(1000000);
    HC_Open_Segment("/flat");
    char type[HC_TEXT_MAX];
    HC_KEY key;
    for (auto _ : state) {
        int found = 0;
        HC_Begin_Contents_Search(".", "segments");
        while (HC_Find_Contents(type, &key))
            ++found;
        HC_End_Contents_Search();
        if (found != 1000000) state.SkipWithError("wrong count");
    }
    HC_Close_Segment();
    state.SetItemsProcessed(state.iterations() * 1000000);
    HC_Reset_System();
}
BENCHMARK(BM_ContentsWalkOfMillionSubsegments)->Unit(benchmark::kMillisecond);

void BM_SubtreeWalkOfMillionSegments(benchmark::State& state) {
    HC_Reset_System();
    BuildTree();
    HC_Open_Segment("/tree");
    char type[HC_TEXT_MAX];
    HC_KEY key;
    for (auto _ : state) {
        int found = 0;
        HC_Begin_Contents_Search("...", "segments");
        while (HC_Find_Contents(type, &key))
            ++found;
        HC_End_Contents_Search();
        if (found != 1010100) state.SkipWithError("wrong count");
    }
    HC_Close_Segment();
    state.SetItemsProcessed(state.iterations() * 1010100);
    HC_Reset_System();
}
BENCHMARK(BM_SubtreeWalkOfMillionSegments)->Unit(benchmark::kMillisecond);

// Writing and reading back a million segments with a shell each, as text in memory, so that the
// disk is not measured.
void BM_MetafileWriteMillionSegments(benchmark::State& state) {
    HC_Reset_System();
    BuildFlat(1000000);
    hc::Database& db = hc::Current();
    size_t bytes = 0;
    for (auto _ : state) {
        std::string text = hc::MetafileText(db, db.Root());
        bytes = text.size();
        benchmark::DoNotOptimize(text.data());
    }
    state.counters["megabytes"] = static_cast<double>(bytes) / 1e6;
    HC_Reset_System();
}
BENCHMARK(BM_MetafileWriteMillionSegments)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_MetafileReadMillionSegments(benchmark::State& state) {
    HC_Reset_System();
    BuildFlat(1000000);
    hc::Database& db = hc::Current();
    std::string text = hc::MetafileText(db, db.Root());
    for (auto _ : state) {
        state.PauseTiming();
        HC_Reset_System();
        state.ResumeTiming();
        std::string error;
        if (!hc::LoadMetafileText(db, text, db.Root(), error)) state.SkipWithError(error.c_str());
    }
    if (db.LiveObjects() != 2000002) state.SkipWithError("wrong object count");
    HC_Reset_System();
}
BENCHMARK(BM_MetafileReadMillionSegments)->Unit(benchmark::kMillisecond)->Iterations(3);

// The change journal's cost: the same work with no listener (/0, the journal only records) and
// with one that hears every call (/1).
void CountChanges(const HC_CHANGE*, int count, void* user) {
    *static_cast<long*>(user) += count;
}

void ListenIf(benchmark::State& state, long& heard) {
    if (state.range(0)) HC_Define_Change_Listener(&CountChanges, &heard);
}

void BM_JournalMillionSegmentBuild(benchmark::State& state) {
    long heard = 0;
    ListenIf(state, heard);
    for (auto _ : state) {
        state.PauseTiming();
        HC_Reset_System();
        state.ResumeTiming();
        BuildFlat(1000000);
    }
    HC_UnDefine_Change_Listener(&CountChanges, &heard);
    state.counters["heard"] = static_cast<double>(heard);
    HC_Reset_System();
}
BENCHMARK(BM_JournalMillionSegmentBuild)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_JournalColourSets(benchmark::State& state) {
    const int n = 100000;
    HC_Reset_System();
    long heard = 0;
    ListenIf(state, heard);
    HC_Open_Segment("/coloured");
    for (auto _ : state) {
        for (int i = 0; i < n; ++i)
            HC_Set_Color(i % 2 ? "faces=red" : "faces=blue");
    }
    HC_Close_Segment();
    HC_UnDefine_Change_Listener(&CountChanges, &heard);
    state.SetItemsProcessed(state.iterations() * n);
    HC_Reset_System();
}
BENCHMARK(BM_JournalColourSets)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

// Undo's cost: a flat build outside a step (/0: nothing is recorded, the build of
// BM_CreateSegmentsWithShell) and as one step (/1: a record per object made).
void BM_UndoBuild(benchmark::State& state) {
    const int n = static_cast<int>(state.range(1));
    for (auto _ : state) {
        state.PauseTiming();
        HC_Reset_System();
        state.ResumeTiming();
        if (state.range(0)) HC_Begin_Undo_Step("Build");
        BuildFlat(n);
        if (state.range(0)) HC_End_Undo_Step();
    }
    state.SetItemsProcessed(state.iterations() * n);
    HC_Reset_System();
}
BENCHMARK(BM_UndoBuild)->Args({0, 1000000})->Args({1, 1000000})->Unit(benchmark::kMillisecond);

// Undoing and redoing the deletion of a subtree of n segments with a shell each.
void BM_UndoRedoDeletion(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    HC_Reset_System();
    BuildFlat(n);
    HC_Begin_Undo_Step("Delete");
    HC_Delete_Segment("/flat");
    HC_End_Undo_Step();
    for (auto _ : state) {
        HC_Undo();
        HC_Redo();
    }
    state.SetItemsProcessed(state.iterations() * n);
    HC_Reset_System();
}
BENCHMARK(BM_UndoRedoDeletion)->Arg(1000000)->Unit(benchmark::kMillisecond);
