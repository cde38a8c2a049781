// The module as a host uses it: loaded at run time, its five functions resolved by name, the
// dialogs found among the application's windows.
#include <QApplication>
#include <QDialog>
#include <QLibrary>
#include <QPointer>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>
#include <mvo/base_model.h>
#include <mvo/base_view.h>

#include <obsidra/exports.h>
#include <obsidra/hc.h>

#include "components/testing/memory_component_host.h"
#include "components/testing/synthetic_building.h"

namespace {

using obsidra::components::testing::BuildingShape;
using obsidra::components::testing::MakeSyntheticBuilding;
using obsidra::components::testing::MemoryComponentHost;

struct Module {
    decltype(&ShowSegmentViewerDialog) showSegmentViewer = nullptr;
    decltype(&ShowOrnViewerDialog) showOrnViewer = nullptr;
    decltype(&OrnViewerSelect) select = nullptr;
    decltype(&ShowOrnTongJiDialog) showTongJi = nullptr;
    decltype(&ClearAllDialog) clearAll = nullptr;
};

// A missing export fails every test; that only the five are exported is the plain tests' check.
const Module& LoadModule() {
    static QLibrary library(QStringLiteral(OBSIDRA_MODULE));
    static Module module = [] {
        EXPECT_TRUE(library.load()) << library.errorString().toStdString();
        Module m;
        m.showSegmentViewer = reinterpret_cast<decltype(m.showSegmentViewer)>(
            library.resolve("ShowSegmentViewerDialog"));
        m.showOrnViewer =
            reinterpret_cast<decltype(m.showOrnViewer)>(library.resolve("ShowOrnViewerDialog"));
        m.select = reinterpret_cast<decltype(m.select)>(library.resolve("OrnViewerSelect"));
        m.showTongJi =
            reinterpret_cast<decltype(m.showTongJi)>(library.resolve("ShowOrnTongJiDialog"));
        m.clearAll = reinterpret_cast<decltype(m.clearAll)>(library.resolve("ClearAllDialog"));
        for (const void* function :
             {(const void*)m.showSegmentViewer, (const void*)m.showOrnViewer, (const void*)m.select,
              (const void*)m.showTongJi, (const void*)m.clearAll})
            EXPECT_NE(function, nullptr);
        return m;
    }();
    return module;
}

// The module's windows by class name: the test shares no type with the module.
std::vector<QWidget*> Windows(const char* className) {
    std::vector<QWidget*> found;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->inherits(className)) found.push_back(widget);
    return found;
}

class SceneHost final : public obsidra::SegmentViewerHost, public obsidra::SegmentViewerView {
public:
    explicit SceneHost(HBaseView* view) : m_view(view) {}
    obsidra::SegmentViewerView* GetView() override { return this; }
    HBaseView* GetHBaseView() override {
        ++asked;
        return m_view;
    }
    int asked = 0;

private:
    HBaseView* m_view;
};

class ExportsTest : public ::testing::Test {
protected:
    ExportsTest() : m_view(&m_model), m_scene(&m_view), m_building(MakeSyntheticBuilding({})) {}
    ~ExportsTest() override { m().clearAll(); }
    static const Module& m() { return LoadModule(); }

    HBaseModel m_model;
    HBaseView m_view;
    SceneHost m_scene;
    MemoryComponentHost m_building;
};

TEST_F(ExportsTest, TheBrowserSeesTheHostsSceneAndASecondCallReplacesIt) {
    HC_Open_Segment_By_Key(m_model.GetModelKey());
    HC_Create_Segment("made by the host");
    HC_Close_Segment();

    m().showSegmentViewer(nullptr, &m_scene);
    auto browsers = Windows("CSegmentBrowserDlg");
    ASSERT_EQ(browsers.size(), 1u);
    EXPECT_TRUE(browsers[0]->isVisible());
    EXPECT_EQ(browsers[0]->windowTitle(), QStringLiteral("Segment Brower"));
    EXPECT_EQ(browsers[0]->parentWidget(), nullptr);
    const auto* tree = browsers[0]->findChild<QTreeWidget*>();
    ASSERT_NE(tree, nullptr);
    ASSERT_GT(tree->topLevelItemCount(), 0);
    const_cast<QTreeWidget*>(tree)->expandItem(tree->topLevelItem(0));
    EXPECT_FALSE(
        tree->findItems(QStringLiteral("made by the host"), Qt::MatchExactly | Qt::MatchRecursive)
            .isEmpty());

    QPointer<QWidget> first = browsers[0];
    m().showSegmentViewer(nullptr, &m_scene);
    EXPECT_TRUE(first.isNull()) << "the first browser is deleted before the second is made";
    EXPECT_EQ(Windows("CSegmentBrowserDlg").size(), 1u);
    EXPECT_EQ(m_scene.asked, 2);

    m().clearAll();
    m().clearAll();
    EXPECT_TRUE(Windows("CSegmentBrowserDlg").empty());
}

TEST_F(ExportsTest, TheComponentViewerIsMadeOnceAndForgottenWhenClosed) {
    const std::uint64_t component = 1;
    m().select(component); // nothing open: nothing happens

    m().showOrnViewer(nullptr, &m_building);
    ASSERT_EQ(Windows("obsidra::components::qt::OrnViewer").size(), 1u);
    QPointer<QWidget> viewer = Windows("obsidra::components::qt::OrnViewer")[0];
    viewer->hide();
    m().showOrnViewer(nullptr, &m_building);
    EXPECT_EQ(Windows("obsidra::components::qt::OrnViewer").size(), 1u);
    EXPECT_TRUE(viewer->isVisible()) << "a second call shows the same viewer again";

    m().select(component);
    viewer->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(viewer.isNull());
    m().select(component); // the module forgot it
    m().clearAll();
}

TEST_F(ExportsTest, StatisticsRunModallyAndLeaveNothingBehind) {
    bool shown = false;
    QTimer::singleShot(0, [&] {
        QWidget* modal = QApplication::activeModalWidget();
        shown = modal && modal->windowTitle() == QStringLiteral("统计");
        if (modal) modal->close();
    });
    m().showTongJi(nullptr, &m_building);
    EXPECT_TRUE(shown);
    for (QWidget* window : QApplication::topLevelWidgets())
        EXPECT_NE(window->windowTitle(), QStringLiteral("统计"));
}

} // namespace
