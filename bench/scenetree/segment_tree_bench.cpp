// The segment tree over a million items: what the browser does when the user expands, pages,
// searches and selects in a very large scene.

#include <benchmark/benchmark.h>
#include <memory>
#include <string>

#include <obsidra/hc.h>

#include "model_of_parts.h"
#include "scenetree/hoops_segment_tree.h"
#include "scenetree/model_texts.h"

namespace {

constexpr int kMillion = 1000000;

// One scene per process: a model with a million named subsegments, each holding one triangle.
ModelOfParts& TheScene() {
    static ModelOfParts scene(kMillion);
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

} // namespace
