// Every shared sample building and mesh opened in the application as a user opens it: what it
// holds arrives, no warning is raised, and the view shows it, fitted, in its own colours. With
// OBSIDRA_VIEWER_SHOTS set to a folder, each picture is also saved there as a PNG.
#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include <obsidra/hc.h>

#include "host/view/scene_view_widget.h"
#include "host/viewer/main_window.h"
#include "host_viewer/faces.h"

namespace obsidra::host::viewer {
namespace {

const QString kSamples = OBSIDRA_SAMPLES;

struct Sample {
    const char* file;
    std::size_t components; // IFC only
    std::size_t faces;
    double tolerance;   // IFC++ tessellates a little differently from run to run
    bool warns = false; // IFC++'s remarks on a file's own faults
};

void PrintTo(const Sample& sample, std::ostream* out) {
    *out << sample.file;
}

// What the picture of a model shows, against the view's background (its top-left corner).
struct Picture {
    double covered = 0; // share of the pixels that are the model's
    double spread = 0;  // the model's extent across the view, the larger of width and height
    double dark = 0;    // share of the model's pixels that are nearly black
};

Picture Measure(const QImage& image) {
    const QRgb background = image.pixel(0, 0);
    const auto near = [](QRgb a, QRgb b) {
        return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
                   std::abs(qBlue(a) - qBlue(b)) <
               12;
    };
    int model = 0, dark = 0, left = image.width(), right = -1, top = image.height(), bottom = -1;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (near(pixel, background)) continue;
            ++model;
            dark += std::max({qRed(pixel), qGreen(pixel), qBlue(pixel)}) < 40 ? 1 : 0;
            left = std::min(left, x), right = std::max(right, x);
            top = std::min(top, y), bottom = std::max(bottom, y);
        }
    Picture picture;
    if (model == 0) return picture;
    picture.covered = double(model) / (image.width() * image.height());
    picture.spread = std::max(double(right - left + 1) / image.width(),
                              double(bottom - top + 1) / image.height());
    picture.dark = double(dark) / model;
    return picture;
}

class SamplesTest : public ::testing::TestWithParam<Sample> {
protected:
    static void SetUpTestSuite() {
        s_window = new MainWindow;
        s_window->resize(900, 700);
        s_window->show();
    }
    static void TearDownTestSuite() {
        delete s_window;
        s_window = nullptr;
    }
    void TearDown() override {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (qobject_cast<QMessageBox*>(widget)) widget->close();
    }

    static MainWindow* s_window;
};

MainWindow* SamplesTest::s_window = nullptr;

TEST_P(SamplesTest, OpensCountedAndDrawn) {
    const Sample& sample = GetParam();
    const QString path = kSamples + "/" + sample.file;
    if (!QFile::exists(path))
        GTEST_SKIP() << "no shared samples beside the project: " << sample.file;

    QSignalSpy finished(s_window, &MainWindow::LoadFinished);
    s_window->OpenFile(path);
    ASSERT_TRUE(finished.wait(120000));
    ASSERT_TRUE(finished.front()[0].toBool()) << finished.front()[1].toString().toStdString();
    bool warned = false;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* box = qobject_cast<QMessageBox*>(widget); box && box->isVisible()) {
            warned = true;
            EXPECT_TRUE(sample.warns) << box->detailedText().toStdString();
        }
    EXPECT_EQ(warned, sample.warns);

    const double faces = Faces(s_window->SceneSegment());
    EXPECT_NEAR(faces, sample.faces, sample.faces * sample.tolerance);
    if (sample.components) {
        ASSERT_TRUE(s_window->Building());
        EXPECT_EQ(s_window->Building()->Building().Components().size(), sample.components);
    }

    if (!s_window->View()->HasRenderer()) GTEST_SKIP() << "no OpenGL 3.3 core context here";
    const QImage image = s_window->View()->Snapshot();
    if (const QString folder = qEnvironmentVariable("OBSIDRA_VIEWER_SHOTS"); !folder.isEmpty())
        image.save(folder + "/" + QFileInfo(path).completeBaseName() + ".png");
    const Picture picture = Measure(image);
    EXPECT_GT(picture.covered, 0.03) << "the model is drawn";
    EXPECT_GT(picture.spread, 0.4) << "and fills the view";
    EXPECT_LT(picture.dark, 0.3) << "in its colours, lit";
}

// Figures as read today; a change in them is a change in what reaches the user.
INSTANTIATE_TEST_SUITE_P(
    Shared, SamplesTest,
    ::testing::Values(Sample{"ifc/IfcOpenHouse_IFC4.ifc", 41, 1246, 0.02},
                      Sample{"ifc/AC20-FZK-Haus.ifc", 90, 22798, 0.02},
                      Sample{"ifc/EnEff_BoilerGasRadiatorDHW_IFC4.ifc", 57, 13690, 0.02, true},
                      Sample{"ifc/Duplex_A_IFC2x3.ifc", 239, 26010, 0.02},
                      Sample{"ifc/Office_A_20110811.ifc", 904, 56317, 0.02},
                      Sample{"ifc/Tekla_Carwash_MiniProject_IFC2x3.ifc", 3684, 210108, 0.02},
                      Sample{"mesh/Spider_binary.stl", 0, 1368, 0},
                      Sample{"mesh/Wuson.ply", 0, 3732, 0},
                      Sample{"mesh/stanford-bunny.obj", 0, 69451, 0},
                      Sample{"mesh/BoxTextured_embedded.gltf", 0, 12, 0},
                      Sample{"mesh/2CylinderEngine.glb", 0, 121496, 0},
                      Sample{"mesh/ClearCoatTest/ClearCoatTest.gltf", 0, 37116, 0}),
    [](const auto& info) {
        return QFileInfo(info.param.file).completeBaseName().remove('-').remove('_').toStdString();
    });

} // namespace
} // namespace obsidra::host::viewer
