// The OpenGL view on a real context (Mesa's software renderer under a virtual X server): what it
// draws, what a click selects, and that an edit redraws only the batch it touched.
#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>
#include <string>

#include <obsidra/hc.h>
#include <obsidra/hc_fastpath.h>
#include <obsidra/hc_undo.h>

#include "host/ifc/ifc_importer.h"
#include "host/view/item_bounds.h"
#include "host/view/scene_view_widget.h"
#include "host/view/viewer_view.h"
#include "mvo/base_model.h"
#include "mvo/geom_handle.h"

namespace obsidra::host::view {
namespace {

class GlViewTest : public testing::Test {
protected:
    void SetUp() override {
        HC_Reset_System();
        m_model = std::make_unique<HBaseModel>();
        HC_Open_Segment_By_Key(m_model->GetModelKey());
        m_part = HC_Open_Segment("part");
        HC_Set_Color("faces=red");
        HC_POINT points[] = {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}};
        int faces[] = {4, 0, 1, 2, 3};
        m_square = HC_Insert_Shell(4, points, 5, faces);
        HC_Close_Segment();
        HC_Close_Segment();
        m_widget = std::make_unique<SceneViewWidget>(m_model.get());
        m_widget->resize(240, 180);
        m_widget->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(m_widget.get()));
        if (!m_widget->HasRenderer()) GTEST_SKIP() << "no OpenGL 3.3 core context here";
        // From straight above, so that the square fills the middle of the view.
        m_widget->GetCamera().Orbit(0, 1000);
        m_widget->FitAll();
    }
    void TearDown() override {
        m_widget.reset();
        m_model.reset();
        HC_Reset_System();
    }

    QColor CentrePixel() {
        QImage image = m_widget->Snapshot();
        return image.pixelColor(image.width() / 2, image.height() / 2);
    }

    std::unique_ptr<HBaseModel> m_model;
    std::unique_ptr<SceneViewWidget> m_widget;
    HC_KEY m_part = 0;
    HC_KEY m_square = 0;
};

bool Reddish(QColor c) {
    return c.red() > 120 && c.green() < 60 && c.blue() < 60;
}

TEST_F(GlViewTest, DrawsTheModelInItsColourAndRedrawsAnEditAlone) {
    QImage image = m_widget->Snapshot();
    EXPECT_TRUE(Reddish(image.pixelColor(image.width() / 2, image.height() / 2)));
    QColor corner = image.pixelColor(2, 2);
    EXPECT_GT(corner.red(), 200) << "the background shows around the model";
    EXPECT_GT(m_widget->LastFrameStats().drawCalls, 0);

    m_widget->Snapshot();
    EXPECT_EQ(m_widget->LastFrameStats().uploads, 0) << "a steady frame uploads nothing";

    HC_Open_Segment_By_Key(m_part);
    HC_Set_Color("faces=blue");
    HC_Close_Segment();
    QColor blue = CentrePixel();
    EXPECT_GT(blue.blue(), 120);
    EXPECT_LT(blue.red(), 60);
    EXPECT_EQ(m_widget->GetSceneCache().BuiltLastSync(), 1);
    EXPECT_EQ(m_widget->LastFrameStats().uploads, 2) << "the part's faces and edges";

    HC_Open_Segment_By_Key(m_part);
    HC_Set_Visibility("faces=off, edges=off");
    HC_Close_Segment();
    EXPECT_GT(CentrePixel().red(), 200);
}

// X-ray is the view's: the square is drawn as a faint grey over the background, and again in
// its own colour once the x-ray is off; the scene is not touched.
TEST_F(GlViewTest, AnXRayedItemLetsTheBackgroundThrough) {
    const HC_REVISION revision = HC_Show_Revision();
    m_widget->SetXRay(m_square, true);
    const QColor seeThrough = CentrePixel();
    EXPECT_GT(seeThrough.red(), 180);
    EXPECT_GT(seeThrough.green(), 180) << "not red: the grey ghost over the background";
    EXPECT_LT(seeThrough.red(), 232) << "but something is drawn (the background alone is 237)";
    m_widget->SetXRay(m_square, false);
    EXPECT_TRUE(Reddish(CentrePixel()));
    EXPECT_EQ(HC_Show_Revision(), revision);
}

// Dragging the x arrow of a manipulator moves the part along x, as one step of undo; the camera
// does not turn meanwhile.
TEST_F(GlViewTest, DraggingAManipulatorArrowMovesItsSegment) {
    ASSERT_TRUE(HUtilityGeomHandle::SetupManipulator(m_part, m_widget->View(), nullptr, true, false,
                                                     false, true, false, false));
    HC_Open_Segment_By_Key(m_widget->View()->GetSceneKey());
    HC_Open_Segment(HUtilityGeomHandle::kHandlesSegment);
    HC_Begin_Contents_Search("...", "shells");
    char type[HC_TEXT_MAX];
    HC_KEY head = 0;
    ASSERT_TRUE(HC_Find_Contents(type, &head));
    HC_End_Contents_Search();
    HC_Close_Segment();
    HC_Close_Segment();
    m_widget->Snapshot();
    Vec3 screen;
    ASSERT_TRUE(m_widget->GetCamera().Project(WorldBounds(head, 0, nullptr).Centre(), screen));
    const QPoint grab(static_cast<int>(screen.x), static_cast<int>(screen.y));
    const Vec3 eye = m_widget->GetCamera().Eye();

    QTest::mousePress(m_widget.get(), Qt::LeftButton, {}, grab);
    QTest::mouseMove(m_widget.get(), grab + QPoint(30, 0));
    QTest::mouseRelease(m_widget.get(), Qt::LeftButton, {}, grab + QPoint(30, 0));
    float matrix[16] = {};
    HC_Open_Segment_By_Key(m_part);
    ASSERT_TRUE(HC_Show_Existence("modelling matrix"));
    HC_Show_Modelling_Matrix(matrix);
    HC_Close_Segment();
    EXPECT_GT(matrix[12], 0.1f) << "moved along x";
    EXPECT_EQ(matrix[13], 0.0f);
    const Vec3 still = m_widget->GetCamera().Eye();
    EXPECT_EQ(still.x, eye.x);
    char step[HC_TEXT_MAX] = "";
    ASSERT_TRUE(HC_Show_Undo_Step(step));
    EXPECT_STREQ(step, "Manipulate");
}

TEST_F(GlViewTest, AClickSelectsTheItemUnderIt) {
    QSignalSpy picked(m_widget.get(), &SceneViewWidget::Picked);
    QPoint centre(m_widget->width() / 2, m_widget->height() / 2);
    QTest::mouseClick(m_widget.get(), Qt::LeftButton, {}, centre);
    ASSERT_EQ(picked.count(), 1);
    EXPECT_EQ(picked[0][0].value<HC_KEY>(), m_square);
    HSelectionSet* selection = m_widget->View()->GetSelection();
    ASSERT_EQ(selection->GetSize(), 1);
    HC_KEY path[] = {m_square, m_model->GetModelKey()};
    EXPECT_TRUE(selection->IsSelected(m_square, 2, path));
    QColor highlighted = CentrePixel();
    EXPECT_GT(highlighted.green(), 60) << "the selection is drawn in the highlight colour";

    QTest::mouseClick(m_widget.get(), Qt::LeftButton, {}, QPoint(2, 2));
    EXPECT_EQ(picked.count(), 2);
    EXPECT_EQ(picked[1][0].value<HC_KEY>(), -1);
    EXPECT_EQ(selection->GetSize(), 0);
}

TEST_F(GlViewTest, TheBrowsersFitAndBoundingReachTheView) {
    HC_KEY path[] = {m_part, m_model->GetModelKey()};
    m_widget->View()->VisualizeBounding(true, m_part, 2, path);
    QImage image = m_widget->Snapshot();
    int overlay = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            QColor c = image.pixelColor(x, y);
            overlay += c.red() > 200 && c.blue() > 100 && c.green() < 80;
        }
    EXPECT_GT(overlay, 50) << "the box's edges show";

    m_widget->View()->VisualizeBounding(false, -1, 0, nullptr);
    m_widget->GetCamera().Pan(1000, 0);
    EXPECT_FALSE(Reddish(CentrePixel())) << "panned away";
    m_widget->View()->FitItemByPath(m_part, 2, path);
    EXPECT_TRUE(Reddish(CentrePixel()));
}

// Draws what fill() loads into the emptied model from the front, writes it to name (in the test's
// working directory, to look at) and answers how much of the picture is not background.
double SnapshotOf(SceneViewWidget& widget, HC_KEY model, const char* name,
                  const std::function<void()>& fill) {
    HC_Open_Segment_By_Key(model);
    HC_Flush_Contents(".", "everything");
    HC_Close_Segment();
    fill();
    widget.resize(640, 480);
    widget.GetCamera().Orbit(0, -1000); // from below, then up to a view from the front
    widget.GetCamera().Orbit(0, 205);
    widget.FitAll();
    QImage image = widget.Snapshot();
    image.save(name);
    int coloured = 0, all = 0;
    for (int y = 0; y < image.height(); y += 4)
        for (int x = 0; x < image.width(); x += 4, ++all)
            coloured += image.pixelColor(x, y) != image.pixelColor(0, 0);
    return static_cast<double>(coloured) / all;
}

// In a view that is never shown, as a script that only wants the picture makes it.
TEST_F(GlViewTest, SnapshotsOfTheExamples) {
    HC_KEY model = m_model->GetModelKey();
    SceneViewWidget hidden(m_model.get());
    // The showcase is mostly thin curves and small items.
    for (auto [example, least] : {std::pair{"house", 0.15}, std::pair{"showcase", 0.03}}) {
        std::string file = std::string(OBSIDRA_EXAMPLES "/") + example + ".hmf";
        double coloured = SnapshotOf(hidden, model, (std::string(example) + ".png").c_str(), [&] {
            char error[HC_TEXT_MAX];
            EXPECT_TRUE(HC_Fast_Read_Metafile(file.c_str(), model, error)) << error;
        });
        EXPECT_GT(coloured, least) << example << " fills the view";
    }
    double coloured = SnapshotOf(hidden, model, "ifc.png", [&] {
        auto result = ifc::ImportIfcFile(OBSIDRA_IFC_SAMPLES "/IfcOpenHouse_IFC4.ifc");
        EXPECT_TRUE(result.building) << result.error;
        HC_Open_Segment_By_Key(model);
        HC_Include_Segment("/ifc");
        HC_Close_Segment();
    });
    EXPECT_GT(coloured, 0.15) << "the IFC building fills the view";
}

} // namespace
} // namespace obsidra::host::view
