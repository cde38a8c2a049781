// A host that builds a small scene and a one-storey building of its own, then opens every
// dialog of the module over them. With --quit it closes each dialog by itself, for scripts.
#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <cstring>
#include <mvo/base_model.h>
#include <mvo/base_view.h>

#include <obsidra/exports.h>
#include <obsidra/hc.h>

namespace {

// The view the segment browser inspects.
class SceneHost final : public obsidra::SegmentViewerHost, public obsidra::SegmentViewerView {
public:
    explicit SceneHost(HBaseView* view) : m_view(view) {}
    obsidra::SegmentViewerView* GetView() override { return this; }
    HBaseView* GetHBaseView() override { return m_view; }

private:
    HBaseView* m_view;
};

// The building the component viewer and the statistics dialog show: no projects yet, two
// categories counted.
class BuildingHost final : public obsidra::ComponentHost,
                           obsidra::ComponentHost::View,
                           obsidra::ComponentHost::GeometryIndex,
                           obsidra::ComponentHost::Model,
                           obsidra::ComponentHost::ProjectSource {
public:
    explicit BuildingHost(HBaseView* view) : m_view(view) {}
    obsidra::ComponentHost::View* GetView() override { return this; }
    obsidra::ComponentHost::GeometryIndex* GetGeometryIndex() override { return this; }
    obsidra::ComponentHost::Model* GetModel() override { return this; }
    void RedrawView() override { m_view->Update(); }
    void CollectHighlightedComponents(std::vector<std::uint64_t>&) override {}
    std::shared_ptr<obsidra::ComponentHost::GeometryHandle> FindGeometry(std::int64_t) override {
        return nullptr;
    }
    obsidra::ComponentHost::ProjectSource* GetProjectSource() override { return this; }
    void CollectMinorCategoryCounts(obsidra::MinorCategoryCounts& counts) override {
        counts["墙"] = 12;
        counts["门"] = 3;
    }
    void CollectProjects(std::vector<obsidra::ComponentHost::Project*>&) override {}

private:
    HBaseView* m_view;
};

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const bool quit = argc > 1 && std::strcmp(argv[1], "--quit") == 0;

    HBaseModel model;
    HBaseView view(&model);
    HC_Open_Segment_By_Key(model.GetModelKey());
    HC_Open_Segment("walls");
    HC_Set_Color("faces=red");
    const HC_POINT points[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}};
    const int faces[] = {3, 0, 1, 2};
    HC_Insert_Shell(3, points, 4, faces);
    HC_Close_Segment();
    HC_Close_Segment();

    SceneHost scene(&view);
    BuildingHost building(&view);
    ShowSegmentViewerDialog(nullptr, &scene);
    ShowOrnViewerDialog(nullptr, &building);
    const std::uint64_t nothing = 0;
    OrnViewerSelect(nothing);
    if (quit) {
        // The statistics dialog is modal: close it from the event loop it runs.
        QTimer::singleShot(0, [] {
            if (QWidget* modal = QApplication::activeModalWidget()) modal->close();
        });
    }
    ShowOrnTongJiDialog(nullptr, &building);
    if (quit) {
        ClearAllDialog();
        std::puts("example-host: every export called");
        return 0;
    }
    const int status = app.exec();
    ClearAllDialog();
    return status;
}
