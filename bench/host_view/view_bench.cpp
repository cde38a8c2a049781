// The 3D view on the software renderer: the first frame of a scene (walk, upload, draw), a
// steady frame (draw only), and the frame after one segment's colour changed; with the draw
// calls, buffer uploads and batches built per frame as counters. Run under a virtual X server:
//   xvfb-run -a env LIBGL_ALWAYS_SOFTWARE=1 QT_QPA_PLATFORM=xcb bench_host_view
// Small scenes by default; OBSIDRA_BENCH_FULL=1 adds the 1,000,000-triangle scene.
#include <QApplication>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <obsidra/hc.h>

#include "host/view/scene_cache.h"
#include "host/view/scene_view_widget.h"
#include "mvo/base_model.h"
#include "mvo/base_view.h"

namespace {

using obsidra::host::view::SceneCache;
using obsidra::host::view::SceneViewWidget;

constexpr int kTrianglesPerSegment = 10000;

// A scene of about triangles triangles in kScene: segments of one grid shell each, side by side,
// each in a colour of its own. Returns the segments.
constexpr const char* kScene = "/bench scene";
std::vector<HC_KEY> BuildScene(int triangles) {
    int segments = std::max(1, triangles / kTrianglesPerSegment);
    int side = 71; // 70 x 70 quads, 9800 triangles
    std::vector<HC_POINT> points;
    for (int r = 0; r < side; ++r)
        for (int c = 0; c < side; ++c)
            points.push_back({static_cast<float>(c), static_cast<float>(r),
                              static_cast<float>((r * c) % 7) * 0.1f});
    std::vector<int> faces;
    for (int r = 0; r + 1 < side; ++r)
        for (int c = 0; c + 1 < side; ++c) {
            int a = r * side + c;
            faces.insert(faces.end(), {3, a, a + 1, a + side + 1, 3, a, a + side + 1, a + side});
        }
    std::vector<HC_KEY> keys;
    HC_Open_Segment(kScene);
    for (int s = 0; s < segments; ++s) {
        keys.push_back(HC_Open_Segment(("tile " + std::to_string(s)).c_str()));
        float shift[16] = {1,
                           0,
                           0,
                           0,
                           0,
                           1,
                           0,
                           0,
                           0,
                           0,
                           1,
                           0,
                           static_cast<float>((s % 10) * side),
                           static_cast<float>((s / 10) * side),
                           0,
                           1};
        HC_Set_Modelling_Matrix(shift);
        HC_Set_Color(s % 2 ? "faces=light blue" : "faces=(r=0.8 g=0.7 b=0.5)");
        HC_Insert_Shell(static_cast<int>(points.size()), points.data(),
                        static_cast<int>(faces.size()), faces.data());
        HC_Close_Segment();
    }
    HC_Close_Segment();
    return keys;
}

struct Fixture {
    std::unique_ptr<HBaseModel> model;
    std::vector<HC_KEY> segments;
    std::unique_ptr<SceneViewWidget> widget;

    explicit Fixture(int triangles) {
        HC_Reset_System();
        model = std::make_unique<HBaseModel>();
        segments = BuildScene(triangles);
    }
    ~Fixture() {
        widget.reset();
        model.reset();
        HC_Reset_System();
    }
    // A view of the empty model, its context made and its first (empty) frame drawn.
    void MakeWidget() {
        HC_Open_Segment_By_Key(model->GetModelKey());
        HC_Flush_Contents(".", "includes");
        HC_Close_Segment();
        widget = std::make_unique<SceneViewWidget>(model.get());
        widget->resize(800, 600);
        widget->show();
        QApplication::processEvents();
        widget->Snapshot();
    }
    // The scene comes into the model: the next frame walks, uploads and draws it.
    void ShowScene() {
        HC_Open_Segment_By_Key(model->GetModelKey());
        HC_Include_Segment(kScene);
        HC_Close_Segment();
    }
};

void Report(benchmark::State& state, const SceneViewWidget& widget) {
    state.counters["draw_calls"] = widget.LastFrameStats().drawCalls;
    state.counters["uploads"] = widget.LastFrameStats().uploads;
    state.counters["batches_built"] = widget.GetSceneCache().BuiltLastSync();
}

void BM_FirstFrame(benchmark::State& state) {
    Fixture fixture(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        fixture.MakeWidget();
        state.ResumeTiming();
        fixture.ShowScene();
        benchmark::DoNotOptimize(fixture.widget->Snapshot());
        state.PauseTiming();
        Report(state, *fixture.widget);
        fixture.widget.reset();
        state.ResumeTiming();
    }
}

void BM_SteadyFrame(benchmark::State& state) {
    Fixture fixture(static_cast<int>(state.range(0)));
    fixture.MakeWidget();
    fixture.ShowScene();
    fixture.widget->Snapshot();
    for (auto _ : state)
        benchmark::DoNotOptimize(fixture.widget->Snapshot());
    Report(state, *fixture.widget);
}

void BM_FrameAfterColourChange(benchmark::State& state) {
    Fixture fixture(static_cast<int>(state.range(0)));
    fixture.MakeWidget();
    fixture.ShowScene();
    fixture.widget->Snapshot();
    bool red = false;
    for (auto _ : state) {
        HC_Open_Segment_By_Key(fixture.segments.front());
        HC_Set_Color((red = !red) ? "faces=red" : "faces=green");
        HC_Close_Segment();
        benchmark::DoNotOptimize(fixture.widget->Snapshot());
    }
    Report(state, *fixture.widget);
}

// The walk alone, without OpenGL: what the first frame spends before it uploads.
void BM_SceneWalk(benchmark::State& state) {
    Fixture fixture(static_cast<int>(state.range(0)));
    HBaseView view(fixture.model.get());
    HC_Open_Segment_By_Key(fixture.model->GetModelKey());
    HC_Include_Segment(kScene);
    HC_Close_Segment();
    for (auto _ : state) {
        SceneCache cache(view.GetSceneKey());
        cache.Sync();
        benchmark::DoNotOptimize(cache.Bounds());
    }
}

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(10000)->Arg(100000);
    if (const char* full = std::getenv("OBSIDRA_BENCH_FULL"); full && *full == '1')
        bench->Arg(1000000);
    bench->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_FirstFrame)->Apply(Sizes);
BENCHMARK(BM_SteadyFrame)->Apply(Sizes);
BENCHMARK(BM_FrameAfterColourChange)->Apply(Sizes);
BENCHMARK(BM_SceneWalk)->Apply(Sizes);

} // namespace
