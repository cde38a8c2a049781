// The segment tree over a million items: what the browser does when the user expands, pages,
// searches and selects in a very large scene.

#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include <obsidra/hc.h>

#include "model_of_parts.h"
#include "scenetree/hoops_segment_tree.h"
#include "scenetree/model_texts.h"
#include "scenetree/name_filter.h"

namespace {

constexpr int kMillion = 1000000;

// One scene per process: a model with a million named subsegments, each holding one triangle
// (a thousand with OBSIDRA_BENCH_SMALL=1, to check that the benchmarks run).
ModelOfParts& TheScene() {
    const char* small = std::getenv("OBSIDRA_BENCH_SMALL");
    static ModelOfParts scene(small && *small == '1' ? 1000 : kMillion);
    return scene;
}

void BM_ExpandMillionSubsegmentsIntoPages(benchmark::State& state) {
    ModelOfParts& scene = TheScene();
    TreeGraph graph;
    HoopsSegmentTree tree(scene.view.get(), &graph);
    for (auto _ : state) {
        graph.OnExpandItem(tree.GetTopNode(), true);
        benchmark::DoNotOptimize(tree.GetTopNode()->GetChildCount());
    }
    state.counters["pages"] = static_cast<double>(tree.GetTopNode()->GetChildCount());
}
BENCHMARK(BM_ExpandMillionSubsegmentsIntoPages)->Unit(benchmark::kMillisecond);

// The page in the middle is the farthest from both ends of the subsegment list.
void BM_ExpandPageOfAMillion(benchmark::State& state) {
    ModelOfParts& scene = TheScene();
    TreeGraph graph;
    HoopsSegmentTree tree(scene.view.get(), &graph);
    graph.OnExpandItem(tree.GetTopNode(), true);
    TreeGraphItem* page = tree.GetTopNode()->GetFirstChild();
    for (int i = 0; i < state.range(0); ++i)
        page = page->GetNextSibling();
    for (auto _ : state) {
        graph.OnExpandItem(page, true);
        benchmark::DoNotOptimize(page->GetChildCount());
    }
    state.counters["nodes"] = static_cast<double>(page->GetChildCount());
}
BENCHMARK(BM_ExpandPageOfAMillion)->Arg(0)->Arg(500)->Arg(999)->Unit(benchmark::kMillisecond);

// Without hits the walk alone is measured; "part 99999" has 11 hits, each revealed in its page.
void BM_SegmentNameSearchOverAMillion(benchmark::State& state) {
    ModelOfParts& scene = TheScene();
    const char* text = state.range(0) ? "part 99999" : "no such part";
    int hits = 0;
    for (auto _ : state) {
        TreeGraph graph;
        HoopsSegmentTree tree(scene.view.get(), &graph);
        hits = tree.SearchSegments(text);
    }
    state.counters["hits"] = hits;
}
BENCHMARK(BM_SegmentNameSearchOverAMillion)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_CensusOfAMillionShells(benchmark::State& state) {
    ModelOfParts& scene = TheScene();
    for (auto _ : state)
        benchmark::DoNotOptimize(obsidra::scenetree::CensusLines(scene.model->GetModelKey()));
}
BENCHMARK(BM_CensusOfAMillionShells)->Unit(benchmark::kMillisecond);

// One keystroke of a filter typed into the tree: from the first letter, which every part
// holds, to a text that matches eleven parts, and one that matches none. The first hit is what
// the user waits for; the full time bounds what a keystroke costs when nothing cancels it.
void BM_NameFilterKeystrokeOverAMillion(benchmark::State& state) {
    static const char* const kTyped[] = {"p", "part 9", "part 99999", "no such part"};
    ModelOfParts& scene = TheScene();
    const char* text = kTyped[state.range(0)];
    std::atomic<bool> cancel = false;
    double firstHit = 0;
    size_t hits = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        bool first = true;
        hits = obsidra::scenetree::FilterSegmentNames(
                   scene.model->GetModelKey(), text, &cancel,
                   [&](std::span<const HC_KEY>) {
                       if (std::exchange(first, false))
                           firstHit += std::chrono::duration<double, std::milli>(
                                           std::chrono::steady_clock::now() - start)
                                           .count();
                   })
                   .hits;
    }
    state.SetLabel(text);
    state.counters["hits"] = static_cast<double>(hits);
    state.counters["first_hit_ms"] =
        benchmark::Counter(firstHit, benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_NameFilterKeystrokeOverAMillion)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

} // namespace
