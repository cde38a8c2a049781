// The segment browser with its real widget (offscreen) over a model of many subsegments: what a
// person waits for when opening the dialog, expanding the top node and a page, and searching.
// --segments=N sets the model's size (a million by default).

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include <obsidra/hc.h>

#include "browser/segment_browser_dlg.h"
#include "model_of_parts.h"
#include "scenetree/hoops_segment_tree.h"

namespace {

int g_segments = 1000000;

// One scene per process: the model holds "part 0" ... each with one triangle.
ModelOfParts& TheScene() {
    static ModelOfParts scene(g_segments);
    return scene;
}

QTreeWidgetItem* Top(CSegmentBrowserDlg& dialog) {
    return dialog.Tree()->topLevelItem(0);
}

void BM_OpenDialogWithTopNode(benchmark::State& state) {
    ModelOfParts& scene = TheScene();
    for (auto _ : state) {
        CSegmentBrowserDlg dialog(nullptr, scene.view.get());
        dialog.show();
        QApplication::processEvents();
        benchmark::DoNotOptimize(Top(dialog));
    }
}
BENCHMARK(BM_OpenDialogWithTopNode)->Unit(benchmark::kMillisecond);

void BM_ExpandTopNodeIntoPages(benchmark::State& state) {
    ModelOfParts& scene = TheScene();
    CSegmentBrowserDlg dialog(nullptr, scene.view.get());
    dialog.show();
    for (auto _ : state) {
        state.PauseTiming();
        dialog.Rebuild();
        QApplication::processEvents();
        state.ResumeTiming();
        dialog.Tree()->expandItem(Top(dialog));
        QApplication::processEvents();
    }
    state.counters["pages"] = Top(dialog)->childCount();
}
BENCHMARK(BM_ExpandTopNodeIntoPages)->Unit(benchmark::kMillisecond);

// The middle page is the farthest from both ends of the subsegment list.
void BM_ExpandPage(benchmark::State& state) {
    ModelOfParts& scene = TheScene();
    CSegmentBrowserDlg dialog(nullptr, scene.view.get());
    dialog.show();
    dialog.Tree()->expandItem(Top(dialog));
    QTreeWidgetItem* page = Top(dialog)->child(Top(dialog)->childCount() / 2);
    for (auto _ : state) {
        state.PauseTiming();
        dialog.Tree()->collapseItem(page);
        QApplication::processEvents();
        state.ResumeTiming();
        dialog.Tree()->expandItem(page);
        QApplication::processEvents();
    }
    state.counters["nodes"] = page->childCount();
}
BENCHMARK(BM_ExpandPage)->Unit(benchmark::kMillisecond);

// The last part's name is found once, in the last page, which the search opens.
void BM_SegmentSearchOneHit(benchmark::State& state) {
    ModelOfParts& scene = TheScene();
    CSegmentBrowserDlg dialog(nullptr, scene.view.get());
    dialog.show();
    static_cast<QComboBox*>(dialog.Control(1554))->setCurrentText("Segment");
    static_cast<QLineEdit*>(dialog.Control(1320))
        ->setText(QString::fromStdString("part " + std::to_string(g_segments - 1)));
    for (auto _ : state) {
        state.PauseTiming();
        dialog.Rebuild();
        QApplication::processEvents();
        state.ResumeTiming();
        dialog.Search();
        QApplication::processEvents();
    }
    state.counters["current"] = dialog.Tree()->currentItem() ? 1 : 0;
}
BENCHMARK(BM_SegmentSearchOneHit)->Unit(benchmark::kMillisecond);

// One keystroke in the name filter box, typed as a person types it: the walk runs in slices
// between events. The time is until the walk ends and the filtered tree is laid out;
// first_hits_ms is until the tree first shows hits, longest_slice_ms the longest the window
// went without reading its events. "part 9" keeps a ninth of the parts (in pages), "part 99999"
// a handful, "no such part" nothing.
void BM_NameFilterKeystroke(benchmark::State& state) {
    static const char* const kTexts[] = {"part 9", "part 99999", "no such part"};
    ModelOfParts& scene = TheScene();
    CSegmentBrowserDlg dialog(nullptr, scene.view.get());
    dialog.show();
    auto* filter = static_cast<QLineEdit*>(dialog.Control(CSegmentBrowserDlg::kNameFilterId));
    double firstHits = 0;
    double longestSlice = 0;
    for (auto _ : state) {
        state.PauseTiming();
        filter->clear();
        QApplication::processEvents();
        state.ResumeTiming();
        QElapsedTimer clock;
        clock.start();
        filter->setText(QString::fromUtf8(kTexts[state.range(0)]));
        double shown = -1;
        while (dialog.IsNameFilterRunning()) {
            const qint64 before = clock.nsecsElapsed();
            QApplication::processEvents();
            longestSlice = std::max(longestSlice, (clock.nsecsElapsed() - before) / 1e6);
            if (shown < 0 && dialog.GetTreeModel()->IsNameFiltered())
                shown = clock.nsecsElapsed() / 1e6;
        }
        QApplication::processEvents();
        firstHits += shown < 0 ? clock.nsecsElapsed() / 1e6 : shown;
    }
    state.counters["first_hits_ms"] = benchmark::Counter(firstHits / state.iterations());
    state.counters["longest_slice_ms"] = benchmark::Counter(longestSlice);
    state.SetLabel(kTexts[state.range(0)]);
}
BENCHMARK(BM_NameFilterKeystroke)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (!std::strncmp(argv[i], "--segments=", 11)) {
            g_segments = std::atoi(argv[i] + 11);
            for (int j = i; j + 1 < argc; ++j)
                argv[j] = argv[j + 1];
            --argc;
            break;
        }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
