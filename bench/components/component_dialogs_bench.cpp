// The component viewer and the statistics dialog with their real widgets (offscreen) over a
// generated building of 100,000 components and 300,000 geometries. OBSIDRA_BENCH_SMALL=1 uses
// a building of a few dozen components, to check that the benchmarks run.
#include <QTest>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "components/qt/muti_tree_ctrl.h"
#include "components/qt/orn_viewer.h"
#include "components/qt/tong_ji_dialog.h"
#include "components/testing/memory_component_host.h"
#include "components/testing/synthetic_building.h"

namespace {

using obsidra::components::ComponentTree;
using obsidra::components::qt::CMutiTreeCtrl;
using obsidra::components::qt::CUxTongJiDialog;
using obsidra::components::qt::OrnViewer;
using obsidra::components::testing::BuildingShape;
using obsidra::components::testing::MakeSyntheticBuilding;
using obsidra::components::testing::MemoryComponentHost;

// 1 project x 10 floors x 5 disciplines x 4 major x 5 minor categories x 100 components per
// group, 3 geometries each.
BuildingShape Shape() {
    if (const char* small = std::getenv("OBSIDRA_BENCH_SMALL"); small && *small == '1')
        return {1, 2, 2, 2, 2, 3, 3};
    return {1, 10, 5, 4, 5, 100, 3};
}

MemoryComponentHost& Host() {
    static MemoryComponentHost host(MakeSyntheticBuilding(Shape()));
    return host;
}

double ResidentMiB() {
    long pages = 0, resident = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(f);
    }
    return static_cast<double>(resident) * 4096.0 / (1024.0 * 1024.0);
}

void SetCounters(benchmark::State& state) {
    state.counters["components"] = static_cast<double>(Shape().ComponentCount());
    state.counters["geometries"] = static_cast<double>(Shape().GeometryCount());
}

// Opened as the module opens it: made, shown, filled, then painted.
std::unique_ptr<OrnViewer> OpenViewer() {
    auto viewer = std::make_unique<OrnViewer>(&Host());
    viewer->show();
    viewer->RefreshControlTree();
    viewer->repaint();
    return viewer;
}

// First, while the heap holds nothing of earlier viewers: what an open viewer keeps resident
// beyond the host's own building.
void BM_ViewerResidentMemory(benchmark::State& state) {
    Host();
    for (auto _ : state) {
        const double before = ResidentMiB();
        const std::unique_ptr<OrnViewer> viewer = OpenViewer();
        state.counters["viewer_mib"] = ResidentMiB() - before;
        state.counters["process_mib"] = ResidentMiB();
        state.counters["nodes"] = static_cast<double>(viewer->Tree()->Tree().NodeCount());
    }
    SetCounters(state);
}
BENCHMARK(BM_ViewerResidentMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_OpenViewer(benchmark::State& state) {
    Host();
    for (auto _ : state) {
        std::unique_ptr<OrnViewer> viewer = OpenViewer();
        state.PauseTiming();
        if (viewer->Tree()->Tree().NodeCount() < Shape().ComponentCount())
            state.SkipWithError("the tree is not filled");
        viewer.reset();
        state.ResumeTiming();
    }
    SetCounters(state);
}
BENCHMARK(BM_OpenViewer)->Unit(benchmark::kMillisecond);

// A click on the root's box: every box, every geometry's SetVisible, the host's redraw and the
// tree's repaint, with the first levels expanded as a user would have them.
void BM_ToggleRootByMouse(benchmark::State& state) {
    const std::unique_ptr<OrnViewer> viewer = OpenViewer();
    CMutiTreeCtrl* tree = viewer->Tree();
    tree->expandToDepth(3);
    const QPoint box = tree->CheckBoxRect(tree->Tree().Root()).center();
    Host().ClearRecordedCalls();
    for (auto _ : state) {
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, box);
        tree->viewport()->repaint();
        state.PauseTiming();
        if (Host().VisibilityCalls().size() != Shape().GeometryCount() || Host().RedrawCount() != 1)
            state.SkipWithError("a click must reach every geometry and redraw once");
        Host().ClearRecordedCalls();
        state.ResumeTiming();
    }
    SetCounters(state);
}
BENCHMARK(BM_ToggleRootByMouse)->Unit(benchmark::kMillisecond);

void BM_ShowStatistics(benchmark::State& state) {
    Host();
    for (auto _ : state) {
        CUxTongJiDialog dialog(&Host());
        dialog.show();
        dialog.repaint();
        dialog.close();
    }
    SetCounters(state);
}
BENCHMARK(BM_ShowStatistics)->Unit(benchmark::kMillisecond);

} // namespace
