// A building shows while it loads, and a load that ends otherwise than opened takes what it
// showed away again, leaving the open scene as it was.
#include <QApplication>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include <obsidra/hc.h>

#include "host/viewer/main_window.h"
#include "host_viewer/faces.h"

namespace obsidra::host::viewer {
namespace {

const QString kHouse = OBSIDRA_TEST_DATA "/IfcOpenHouse_IFC4.ifc";
const QString kSpider = OBSIDRA_TEST_DATA "/Spider_binary.stl";

bool Visible(HC_KEY segment) {
    char visibility[HC_TEXT_MAX] = "";
    HC_Open_Segment_By_Key(segment);
    if (HC_Show_Existence("visibility") > 0) HC_Show_Visibility(visibility);
    HC_Close_Segment();
    return std::string(visibility).find("off") == std::string::npos;
}

struct Outcome {
    bool opened = false;
    int previews = 0;
    std::uint32_t previewFaces = 0; // the most the preview showed
    bool sceneHidden = true;        // the open scene was hidden while the preview showed
};

// Opens the file; cancel asks for a cancel at the first preview.
Outcome Load(MainWindow& window, const QString& path, bool cancel) {
    Outcome outcome;
    const HC_KEY scene = window.SceneSegment();
    QObject::connect(&window, &MainWindow::PreviewShown, &window, [&] {
        ++outcome.previews;
        outcome.previewFaces = std::max(outcome.previewFaces, Faces(window.PreviewSegment()));
        outcome.sceneHidden = outcome.sceneHidden && !Visible(scene);
        if (cancel) window.CancelLoading();
    });
    QSignalSpy finished(&window, &MainWindow::LoadFinished);
    window.OpenFile(path);
    EXPECT_TRUE(finished.wait(20000)) << path.toStdString();
    window.disconnect(&window, &MainWindow::PreviewShown, nullptr, nullptr);
    outcome.opened = !finished.isEmpty() && finished.front()[0].toBool();
    return outcome;
}

TEST(ViewerPreviewTest, ABuildingShowsWhileItLoadsAndACancelTakesItAway) {
    MainWindow window(false);
    ASSERT_TRUE(Load(window, kSpider, false).opened);
    const HC_KEY spider = window.SceneSegment();

    const Outcome cancelled = Load(window, kHouse, true);
    EXPECT_FALSE(cancelled.opened);
    EXPECT_GE(cancelled.previews, 1);
    EXPECT_GT(cancelled.previewFaces, 0u);
    EXPECT_TRUE(cancelled.sceneHidden);
    EXPECT_EQ(window.PreviewSegment(), 0);
    EXPECT_EQ(window.SceneSegment(), spider);
    EXPECT_TRUE(Visible(spider));
    EXPECT_EQ(Faces(spider), 1368u);

    const Outcome opened = Load(window, kHouse, false);
    EXPECT_TRUE(opened.opened);
    EXPECT_GE(opened.previews, 1);
    EXPECT_EQ(window.PreviewSegment(), 0);
    EXPECT_EQ(HC_Show_Existence_By_Key(spider, "self"), 0);
    // The preview showed the building's geometry, all of it by the end.
    EXPECT_EQ(opened.previewFaces, Faces(window.SceneSegment()));
}

} // namespace
} // namespace obsidra::host::viewer
