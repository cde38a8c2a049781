// Building the component tree over a large generated building, and ticking its root.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <vector>

#include "components/component_tree.h"
#include "components/testing/memory_component_host.h"
#include "components/testing/synthetic_building.h"

namespace {

using obsidra::components::CheckState;
using obsidra::components::ComponentTree;
using obsidra::components::Grouping;
using obsidra::components::testing::BuildingShape;
using obsidra::components::testing::MakeSyntheticBuilding;
using obsidra::components::testing::MemoryComponentHost;

// 1 project x 10 floors x 5 disciplines x 4 major x 5 minor categories x 100 components per
// group: 100,000 components with 3 geometries each.
BuildingShape LargeShape() {
    return {1, 10, 5, 4, 5, 100, 3};
}

MemoryComponentHost& LargeHost() {
    static MemoryComponentHost host(MakeSyntheticBuilding(LargeShape()));
    return host;
}

void SetCounters(benchmark::State& state, const ComponentTree& tree) {
    state.counters["nodes"] = static_cast<double>(tree.NodeCount());
    state.counters["components"] = static_cast<double>(LargeShape().ComponentCount());
    state.counters["geometries"] = static_cast<double>(LargeShape().GeometryCount());
}

// A rebuild as the view's refresh button does it: the old tree goes, the new one is built from
// the host's projects and the highlight is fetched.
void BM_BuildTree(benchmark::State& state, Grouping grouping) {
    MemoryComponentHost& host = LargeHost();
    ComponentTree tree(&host);
    tree.SetGrouping(grouping);
    for (auto _ : state) {
        tree.RebuildFromHost();
        benchmark::DoNotOptimize(tree.NodeCount());
    }
    SetCounters(state, tree);
}
BENCHMARK_CAPTURE(BM_BuildTree, byFloor, Grouping::ByFloor)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_BuildTree, byDiscipline, Grouping::ByDiscipline)
    ->Unit(benchmark::kMillisecond);

// One mouse click on the root: every box, every geometry's visibility, one redraw.
void BM_ToggleRootByMouse(benchmark::State& state) {
    MemoryComponentHost& host = LargeHost();
    ComponentTree tree(&host);
    tree.RebuildFromHost();
    host.ClearRecordedCalls();
    std::int64_t toggles = 0;
    for (auto _ : state) {
        tree.ToggleByMouse(tree.Root());
        ++toggles;
        state.PauseTiming();
        if (host.VisibilityCalls().size() != LargeShape().GeometryCount() ||
            host.RedrawCount() != 1)
            state.SkipWithError("a click must reach every geometry and redraw once");
        host.ClearRecordedCalls();
        state.ResumeTiming();
    }
    SetCounters(state, tree);
    state.counters["unticked"] = tree.GetCheckState(tree.Root()) == CheckState::Unchecked;
    benchmark::DoNotOptimize(toggles);
}
BENCHMARK(BM_ToggleRootByMouse)->Unit(benchmark::kMillisecond);

// The view's highlight refresh with 1,000 selected components spread over the building.
void BM_SetHighlight(benchmark::State& state) {
    MemoryComponentHost& host = LargeHost();
    ComponentTree tree(&host);
    tree.RebuildFromHost();
    std::vector<std::uint64_t> handles;
    for (std::uint64_t handle = 1; handle <= LargeShape().ComponentCount(); handle += 100)
        handles.push_back(handle);
    for (auto _ : state)
        tree.SetHighlight(handles);
    SetCounters(state, tree);
    state.counters["handles"] = static_cast<double>(handles.size());
}
BENCHMARK(BM_SetHighlight)->Unit(benchmark::kMicrosecond);

} // namespace
